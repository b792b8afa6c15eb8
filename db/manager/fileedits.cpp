#include "db/manager/fileedits.h"

#include "core/providers/mainviewprovider.h"
#include "core/records/file.h"
#include "db/manager/editnotes.h"
#include "db/manager/tagmerges.h"
#include "fileops/provider/fileoperationprovider.h"

#include <QTimer>

#include <algorithm>

namespace {
QVector<qint64> inOrder(QVector<qint64> fileIds)
{
    std::sort(fileIds.begin(), fileIds.end());
    return fileIds;
}

EditBase ofFiles(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds = {})
{
    EditBase base;
    base.files = fileIds;
    base.tags = tagIds;
    return base;
}
} // namespace

int FileEdits::mostPairs = TagMerges::mostAtOnce;

void FileEdits::setProviders(MainViewProvider *records, FileOperationProvider *worker)
{
    m_records = records;
    m_worker = worker;
}

bool FileEdits::updateFile(qint64 fileId, const QString &column, const QString &value)
{
    if (column == QLatin1String("file_name") && !m_host.isNameGiven(value))
        return false;
    return m_host.isStorable(value) && edit(ofFiles({fileId}), [&](MainViewProvider &files) {
               const bool isNoted = column == QLatin1String("file_name")
                                        ? m_host.notes().fileRenamed(fileId, value)
                                        : m_host.notes().fileDescribed(fileId);
               return isNoted && files.updateFile(fileId, column, value);
           });
}

bool FileEdits::updateFilePath(qint64 fileId, const QString &column, const QString &value)
{
    return m_host.isStorable(value) && edit(ofFiles({fileId}), [&](MainViewProvider &files) {
               return files.updateFilePath(fileId, column, value);
           });
}

bool FileEdits::renameFile(qint64 fileId, const QString &name, const QString &path, const QString &relPath)
{
    return m_host.isNameGiven(name) && m_host.isStorable(path) && m_host.isStorable(relPath) &&
           edit(ofFiles({fileId}), [&](MainViewProvider &files) {
               return m_host.notes().fileRenamed(fileId, name) &&
                      files.renameFile(fileId, name, path, relPath);
           });
}

bool FileEdits::changeTags(const TagChanges &changes)
{
    const EditBase base = ofFiles(Tagging::files(changes), Tagging::tags(changes));
    if (Tagging::pairs(changes) <= mostPairs)
        return edit(base, [&](MainViewProvider &files) {
            m_host.notes().links(changes);
            return files.changeTags(changes);
        });
    if (!m_worker || !m_host.mayRequest(base))
        return false;
    request([changes](FileOperationProvider &files) { files.changeTags(changes); });
    return true;
}

bool FileEdits::replay(const EditBase &base, const QVector<ChangeSet> &changes)
{
    if (!m_worker || !m_host.mayRequest(base))
        return false;
    request([changes](FileOperationProvider &files) { files.replay(changes); });
    return true;
}

bool FileEdits::mergeTags(qint64 target, const QVector<qint64> &others)
{
    if (!m_worker || !m_host.mayRequest(ofFiles({}, others + QVector<qint64>{target})))
        return false;
    request([=](FileOperationProvider &files) { files.mergeTags(target, others); });
    return true;
}

bool FileEdits::edit(const EditBase &base, const std::function<bool(MainViewProvider &)> &change)
{
    return m_records && m_host.runFileEdit(base, [&] { return change(*m_records); });
}

bool FileEdits::addFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool fromSelectedNode,
                         qint64 nodeId, const QHash<QString, QString> &hyperlinkDetails)
{
    if (!m_worker || !m_host.mayRequest(ofFiles({}, tagIds)))
        return false;
    request([=](FileOperationProvider &files) {
        files.addFiles(paths, tagIds, fromSelectedNode, nodeId, hyperlinkDetails);
    });
    return true;
}

bool FileEdits::addFilesList(const QStringList &paths)
{
    if (!m_worker || !m_host.mayRequest({}))
        return false;
    request([paths](FileOperationProvider &files) { files.addFilesList(paths); });
    return true;
}

void FileEdits::deleteFiles(const QVector<qint64> &fileIds, bool onlyMissing)
{
    if (fileIds.isEmpty() || !m_host.mayRequest(ofFiles(fileIds)))
        return;
    const QVector<qint64> ids = inOrder(fileIds);
    request([ids, codes = idCodes(ids), onlyMissing](FileOperationProvider &files) {
        files.deleteFiles(ids, codes, onlyMissing);
    });
}

void FileEdits::transferFiles(const QVector<qint64> &fileIds)
{
    if (fileIds.isEmpty() || !m_host.mayRequest(ofFiles(fileIds)))
        return;
    const QVector<qint64> ids = inOrder(fileIds);
    request([ids, codes = idCodes(ids)](FileOperationProvider &files) { files.transferFiles(ids, codes); });
}

void FileEdits::extractFiles(const QVector<qint64> &fileIds, const QStringList &targetPaths,
                             const QSet<QString> &replacedPaths, const QSet<QString> &comparedPaths)
{
    if (!fileIds.isEmpty())
        request([=](FileOperationProvider &files) {
            files.extractFiles(fileIds, targetPaths, replacedPaths, comparedPaths);
        });
}

void FileEdits::extractToTemporary(qint64 fileId)
{
    request([fileId](FileOperationProvider &files) { files.extractToTemporary(fileId); });
}

void FileEdits::exportDatabase(const ExportRequest &what, const std::shared_ptr<PartFile> &target)
{
    request([what, target](FileOperationProvider &files) { files.exportDatabase(what, target); });
}

void FileEdits::remakeThumbnails(const QVector<qint64> &fileIds)
{
    if (m_host.mayRequest(ofFiles(fileIds)))
        request([fileIds](FileOperationProvider &files) { files.remakeThumbnails(fileIds); });
}

void FileEdits::locateFiles(const QMap<qint64, QString> &paths)
{
    if (paths.isEmpty() || !m_host.mayRequest(ofFiles(paths.keys().toVector())))
        return;
    const QVector<qint64> ids = paths.keys().toVector();
    request([ids, places = QStringList(paths.values()), codes = idCodes(ids)](FileOperationProvider &files) {
        files.locateFiles(ids, places, codes);
    });
}

void FileEdits::checkExternalFiles(const QVector<qint64> &fileIds, bool givesWay, bool marksOnly)
{
    if (m_worker)
        m_worker->checkExternalFiles(fileIds, givesWay, marksOnly);
}

bool FileEdits::endChecks()
{
    return m_worker && m_worker->endChecks();
}

QVector<qint64> FileEdits::endSingleChecks()
{
    return m_worker ? m_worker->endSingleChecks() : QVector<qint64>();
}

void FileEdits::request(const std::function<void(FileOperationProvider &)> &task)
{
    FileOperationProvider *worker = m_worker;
    if (worker)
        QTimer::singleShot(0, worker, [worker, task] { task(*worker); });
}

QStringList FileEdits::idCodes(const QVector<qint64> &fileIds) const
{
    const QMap<qint64, File *> &files = m_host.knownFiles().items();
    QStringList codes;
    codes.reserve(fileIds.size());
    // A million looks for a file would take seconds, each of them leaving the processor's cache: both lists
    // are walked side by side.
    auto file = files.constBegin();
    for (const qint64 fileId : fileIds) {
        if (file == files.constEnd() || file.key() != fileId)
            file = files.constFind(fileId);
        const bool isKnown = file != files.constEnd();
        codes.append(isKnown ? file.value()->idCode() : QString());
        if (isKnown)
            ++file;
    }
    return codes;
}

void FileEdits::importDatabase(const QString &source, bool isShell, const ImportOptions &options)
{
    if (m_host.mayRequest({}))
        request([=](FileOperationProvider &files) { files.importDatabase(source, isShell, options); });
}
