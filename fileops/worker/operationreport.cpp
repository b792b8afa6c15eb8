#include "fileops/worker/operationreport.h"

#include <QLocale>
#include <algorithm>

namespace {
QString sentence(FileOperationType type)
{
    switch (type) {
    case FileOperationType::AddFilesOperation:
    case FileOperationType::AddHyperlinksOperation:
    case FileOperationType::AddFileListOperation:
        return OperationReport::tr("Files added: %1 of %2.");
    case FileOperationType::AutoLinkFilesOperation:
        return OperationReport::tr("Files linked: %1 of %2.");
    case FileOperationType::DeleteFilesOperation:
        return OperationReport::tr("Files deleted: %1 of %2.");
    case FileOperationType::ExtractFilesOperation:
    case FileOperationType::ExtractToTemporaryOperation:
        return OperationReport::tr("Files extracted: %1 of %2.");
    case FileOperationType::LocateFilesOperation:
        return OperationReport::tr("Files located: %1 of %2.");
    case FileOperationType::TransferFilesOperation:
        return OperationReport::tr("Files transferred: %1 of %2.");
    case FileOperationType::ChangeTagsOperation:
    case FileOperationType::ReplayOperation:
        return OperationReport::tr("Files whose tags were changed: %1 of %2.");
    case FileOperationType::RemakeThumbnailsOperation:
        return OperationReport::tr("Thumbnails remade: %1 of %2.");
    default:
        return {};
    }
}

/** Texts name the row that failed, codes the cause. */
bool isSameCause(const QSqlError &one, const QSqlError &other)
{
    return one.nativeErrorCode() == other.nativeErrorCode() &&
           (!one.nativeErrorCode().isEmpty() || one.databaseText() == other.databaseText());
}
} // namespace

void OperationReport::begin(FileOperationType type)
{
    *this = OperationReport();
    m_type = type;
}

void OperationReport::note(const QSqlError &error)
{
    const bool isKnown = std::any_of(m_errors.cbegin(), m_errors.cend(),
                                     [&](const QSqlError &known) { return isSameCause(known, error); });
    if (!isKnown)
        m_errors.append(error);
}

bool OperationReport::holds(const std::function<bool(const QSqlError &)> &kind) const
{
    return std::any_of(m_errors.cbegin(), m_errors.cend(), kind);
}

void OperationReport::setDone(int done, int total)
{
    m_done = done;
    m_total = total;
}

bool OperationReport::isShort(bool isCanceled) const
{
    return hasErrors() || (isCanceled && m_done < m_total && !outcome().isEmpty());
}

OperationShortfall OperationReport::shortfall() const
{
    return {m_errors, outcome()};
}

QString OperationReport::outcome() const
{
    if (!m_outcome.isEmpty() || m_total <= 0)
        return m_outcome;
    const QString words = sentence(m_type);
    return words.isEmpty() ? words : words.arg(QLocale().toString(m_done), QLocale().toString(m_total));
}
