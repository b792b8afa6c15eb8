#include "core/controllers/filedragdata.h"

#include "app/settings/constants.h"
#include "core/controllers/extractionplan.h"
#include "core/controllers/miscoperationthread.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "db/manager/databasemanger.h"
#include "fileops/files/temporarycopies.h"
#include "models/base/idlistmime.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>
#include <QUuid>

#include <memory>

namespace {

// The other program waits for some seconds, and the pointer belongs to the drag until then.
constexpr qint64 mostBytesCopied = 512LL * 1024 * 1024;
constexpr int lookInterval = 20; // ms

void appendUrl(QByteArray &list, const QString &path)
{
    list += QUrl::fromLocalFile(path).toEncoded() + "\r\n";
}

// Runs until the worker has nothing to do, or is gone.
void waitFor(const QPointer<DatabaseManger> &manager)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&loop, &manager] {
        if (!manager || !manager->isBusy())
            loop.quit();
    });
    timer.start(lookInterval);
    // Asked by the other program in the middle of the drag, which leaves no way but to wait here.
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

const QString FileDragData::copiesFormat = QStringLiteral("vorna/temporary-copies");

FileDragData::FileDragData(const QVector<const File *> &files, DatabaseManger *manager) : m_manager(manager)
{
    m_fileIds.reserve(files.size());
    qint64 bytesCopied = 0;
    for (const File *file : files) {
        m_fileIds.append(file->id());
        const bool isInternal = file->internal() == FileKind::internal;
        m_hasCopies = m_hasCopies || isInternal;
        bytesCopied += isInternal ? file->size() : 0;
        m_isOffered = m_isOffered || isInternal || file->internal() == FileKind::external;
    }
    // An address has nothing to be dropped elsewhere.
    m_isOffered = m_isOffered && bytesCopied <= mostBytesCopied;
    const std::unique_ptr<QMimeData> packed(IdListMime::pack(Constants::fileMimeType, m_fileIds));
    setData(Constants::fileMimeType, packed->data(Constants::fileMimeType));
}

QStringList FileDragData::formats() const
{
    QStringList formats = QMimeData::formats();
    if (m_isOffered)
        formats.append(Constants::uriMimeType);
    if (m_isOffered && m_hasCopies)
        formats.append(copiesFormat);
    return formats;
}

QVariant FileDragData::retrieveData(const QString &format, QVariant::Type type) const
{
    if (!m_isOffered || format != Constants::uriMimeType)
        return QMimeData::retrieveData(format, type);
    promise();
    // The copying runs events, in which this object may be deleted.
    const QByteArray urls = m_urls;
    // Some programs ask already while the pointer only comes by.
    return !m_isHovering && !makeCopies() ? QByteArray() : urls;
}

void FileDragData::promise() const
{
    if (m_state != Unasked)
        return;
    // The names are fixed with the first question: another one must get the same paths.
    m_state = Promised;
    QVector<ExtractionPlan::Source> sources;
    for (const qint64 fileId : m_fileIds) {
        const File *file = m_manager ? m_manager->file(fileId) : nullptr;
        if (file && file->internal() == FileKind::external)
            appendUrl(m_urls, file->path());
        else if (file && file->internal() == FileKind::internal)
            // By a sign of its own: no time to compare those that look alike, so each is copied.
            sources.append({fileId, file->name(), QString(), file->size(), -fileId});
    }
    m_folder = QDir::tempPath() + QLatin1String("/vorna-") + QUuid::createUuid().toString(QUuid::Id128);
    ExtractionPlan plan(m_folder, sources);
    plan.compare([] { return false; });
    for (const FileConflict &conflict : plan.conflicts())
        plan.settle(conflict.fileId, MiscOperationThread::UseNewNameChoice);
    m_copiedIds = plan.fileIds();
    m_copies = plan.targetPaths();
    for (const qint64 fileId : qAsConst(m_copiedIds))
        m_sizes.append(m_manager->file(fileId)->size());
    for (const QString &path : qAsConst(m_copies))
        appendUrl(m_urls, path);
}

bool FileDragData::makeCopies() const
{
    promise();
    if (m_copies.isEmpty())
        return true;
    if (m_state == Promised)
        order();
    if (m_state == Ordered) {
        const QPointer<const FileDragData> self(this);
        const QPointer<DatabaseManger> manager = m_manager;
        const QStringList copies = m_copies;
        waitFor(manager);
        for (const QString &path : copies)
            TemporaryCopies::noteWritten(path);
        if (!self)
            return false;
        m_state = areComplete() ? Made : Failed;
    }
    return m_state == Made;
}

void FileDragData::order() const
{
    const bool isReady =
        m_manager && QDir().mkdir(m_folder) &&
        QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_state = isReady ? Ordered : Failed;
    // Noted before anything is in it, so that a crash leaves nothing behind for good.
    TemporaryCopies::noteFolder(m_folder);
    if (isReady)
        m_manager->extractFiles(m_copiedIds, m_copies);
}

void FileDragData::removeCopies()
{
    if (m_state != Made && m_state != Failed)
        return;
    TemporaryCopies::remove(m_copies, m_folder);
    m_state = Failed; // for whoever still asks
}

/** What a failure or a cancel leaves behind is shorter, or not there. */
bool FileDragData::areComplete() const
{
    for (int i = 0; i < m_copies.size(); ++i) {
        const QFileInfo copy(m_copies.at(i));
        if (!copy.exists() || copy.size() != m_sizes.at(i))
            return false;
    }
    return true;
}
