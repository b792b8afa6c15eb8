#include "fileops/duplicates/duplicatemanager.h"

#include "core/records/filekind.h"
#include "fileops/adding/fileadder.h"
#include "fileops/contents/filecomparison.h"
#include "fileops/duplicates/duplicatechoice.h"
#include "fileops/files/datachecksum.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QFile>
#include <QLocale>

#include <algorithm>
#include <atomic>
#include <memory>

namespace {

// The three bands of the progress, in percent.
constexpr int readBand = 40;
constexpr int groupBand = 70;
constexpr int wholeBand = 100;
constexpr int filesInRead = 128;
constexpr int pathsInLog = 1000;

void logPaths(const char *title, const QStringList &paths)
{
    QString text = paths.mid(0, pathsInLog).join(QLatin1Char('\n'));
    if (paths.size() > pathsInLog)
        text += QStringLiteral("\n... ") + QString::number(paths.size()) + QStringLiteral(" in all");
    qDebug("%s\n%s", title, qUtf8Printable(text));
}

} // namespace

DuplicateManager::DuplicateManager(QObject *parent) : QObject(parent) {}

bool DuplicateManager::addFilesToDB(const QStringList &paths, bool checkNames, FileOperationWorker &worker,
                                    QStringList &outList, QStringList &keptList, const FolderTags &folderTags,
                                    QHash<QString, QStringList> &inheritedTags)
{
    m_worker = &worker;
    outList.clear();
    keptList.clear();
    // A cancel is no failure: nothing is added then, as the lists are empty.
    if (paths.isEmpty() || !readPaths(paths) || !groupByContent())
        return true;
    if (!findInDatabase())
        return false;
    if (hasEnded())
        return true;
    settleContents(folderTags, inheritedTags);
    reportExamining(m_contents.size(), wholeBand, true);
    if (checkNames && !takeOutNameMatches(folderTags))
        return false;
    QStringList single;
    for (const Candidate &candidate : qAsConst(m_candidates)) {
        if (!candidate.isAdded)
            continue;
        outList.append(candidate.path);
        (candidate.group >= 0 ? keptList : single).append(candidate.path);
    }
    logPaths("\n\n nonDuplicatedFiles:", single);
    logPaths("\n duplicatedFiles:", keptList);
    return true;
}

QVector<FileChecksum> DuplicateManager::checksums() const
{
    QVector<FileChecksum> result;
    for (const Candidate &candidate : m_candidates) {
        if (candidate.isAdded)
            result.append(candidate.checksum);
    }
    return result;
}

bool DuplicateManager::hasEnded() const
{
    if (!m_worker->shouldEnd())
        return false;
    qDebug("DuplicateManager::addFilesToDB() - stopped! Exiting.");
    return true;
}

bool DuplicateManager::readPaths(const QStringList &paths)
{
    // In parts, so that a disk that falls silent is left behind with the files of one part.
    m_candidates.reserve(paths.size());
    for (int from = 0; from < paths.size(); from += filesInRead) {
        const QStringList part = paths.mid(from, filesInRead);
        tellReading(from, paths.size());
        const auto current = std::make_shared<std::atomic<int>>(0);
        const auto look = [part, current](const AwaitedLook::ShouldEnd &shouldEnd) {
            return FileChecksums::ofFiles(part, shouldEnd, [current](int index) { *current = index; });
        };
        const auto read = AwaitedLook::run(look, [&] {
            tellReading(from + *current, paths.size());
            return m_worker->shouldEnd();
        });
        if (hasEnded())
            return false;
        if (!read) {
            m_silentPath = part.at(*current);
            return false;
        }
        for (int i = 0; i < part.size(); ++i)
            appendCandidate(part.at(i), read->at(i));
    }
    return true;
}

void DuplicateManager::tellReading(int number, int all)
{
    const int percent = ProgressThrottle::percent(number, all, 0, readBand);
    if (m_progress.isDue(percent))
        emit operationProgress(FileOperationType::AddFilesOperation,
                               tr("Grouping files with duplicate content"), percent);
}

void DuplicateManager::appendCandidate(const QString &path, const FileChecksum &checksum)
{
    Candidate candidate;
    candidate.path = path;
    candidate.checksum = checksum;
    if (!checksum.isRead && !QFile::exists(path)) {
        // What has vanished since it was dropped must not come back as a hyperlink.
        if (FileAdder::isLocal(path))
            return;
        candidate.isHyperlink = true;
        candidate.checksum.checksum = DataChecksum::ofHyperlink(path);
    }
    m_candidates.append(candidate);
}

bool DuplicateManager::groupByContent()
{
    for (int i = 0; i < m_candidates.size(); ++i) {
        if (m_candidates.at(i).hasChecksum())
            m_byChecksum.append(i);
    }
    const auto checksumAt = [this](int index) { return m_candidates.at(index).checksum.checksum; };
    // Stable, as what is told names the files in the order in which they were given.
    std::stable_sort(m_byChecksum.begin(), m_byChecksum.end(),
                     [&](int left, int right) { return checksumAt(left) < checksumAt(right); });
    int end = 0;
    for (int begin = 0; begin < m_byChecksum.size(); begin = end) {
        if (hasEnded())
            return false;
        reportExamining(begin, ProgressThrottle::percent(begin, m_byChecksum.size(), readBand, groupBand));
        end = begin + 1;
        while (end < m_byChecksum.size() &&
               checksumAt(m_byChecksum.at(end)) == checksumAt(m_byChecksum.at(begin)))
            ++end;
        if (end - begin > 1)
            splitGroup(m_byChecksum.mid(begin, end - begin));
    }
    return !hasEnded();
}

void DuplicateManager::splitGroup(const QVector<int> &sameChecksum)
{
    // The text of a hyperlink is all of its contents; files are compared by their bytes, within one size
    // only.
    QHash<QString, int> contentOfText;
    QHash<qint64, QVector<int>> bySize;
    QVector<qint64> sizes;
    for (const int index : sameChecksum) {
        const Candidate &candidate = m_candidates.at(index);
        if (!candidate.isHyperlink) {
            QVector<int> &ofSize = bySize[candidate.checksum.size];
            if (ofSize.isEmpty())
                sizes.append(candidate.checksum.size);
            ofSize.append(index);
        } else if (contentOfText.contains(candidate.path)) {
            m_contents[contentOfText.value(candidate.path)].members.append(index);
        } else {
            contentOfText.insert(candidate.path, m_contents.size());
            m_contents.append(Content{{index}, {}});
        }
    }
    FileComparison comparison(*m_worker);
    for (const qint64 size : qAsConst(sizes)) {
        const QVector<int> ofSize = bySize.value(size);
        QStringList paths;
        for (const int index : ofSize)
            paths.append(m_candidates.at(index).path);
        for (const QVector<int> &part : comparison.split(paths, size)) {
            Content content;
            for (const int place : part)
                content.members.append(ofSize.at(place));
            m_contents.append(content);
        }
    }
}

bool DuplicateManager::findInDatabase()
{
    QVector<qint64> checksums;
    checksums.reserve(m_byChecksum.size());
    for (const int index : qAsConst(m_byChecksum)) {
        const qint64 checksum = m_candidates.at(index).checksum.checksum;
        if (checksums.isEmpty() || checksums.last() != checksum)
            checksums.append(checksum);
    }
    QHash<qint64, qint64> checksumsByFile;
    if (!m_worker->readChecksums(checksums, checksumsByFile))
        return false;
    QHash<qint64, QVector<qint64>> idsByChecksum;
    for (auto it = checksumsByFile.cbegin(); it != checksumsByFile.cend(); ++it)
        idsByChecksum[it.value()].append(it.key());
    return readDatabaseFiles(*m_worker, checksumsByFile.keys().toVector(), m_databaseFiles) &&
           matchContents(idsByChecksum);
}

bool DuplicateManager::matchContents(const QHash<qint64, QVector<qint64>> &idsByChecksum)
{
    // Contents of one member were not looked at so far; now they count if the database knows their checksum.
    QVector<bool> isGrouped(m_candidates.size(), false);
    for (const Content &content : qAsConst(m_contents)) {
        for (const int index : content.members)
            isGrouped[index] = true;
    }
    for (const int index : qAsConst(m_byChecksum)) {
        if (!isGrouped.at(index) && idsByChecksum.contains(m_candidates.at(index).checksum.checksum))
            m_contents.append(Content{{index}, {}});
    }
    for (int i = 0; i < m_contents.size() && !m_worker->shouldEnd(); ++i) {
        reportExamining(i, ProgressThrottle::percent(i, m_contents.size(), groupBand, wholeBand));
        const Candidate &first = m_candidates.at(m_contents.at(i).members.first());
        QVector<qint64> ids = idsByChecksum.value(first.checksum.checksum);
        std::sort(ids.begin(), ids.end());
        for (const qint64 id : qAsConst(ids)) {
            if (m_databaseFiles.contains(id) && isSameContent(first, m_databaseFiles[id]))
                m_contents[i].databaseFiles.append(id);
        }
    }
    return true;
}

bool DuplicateManager::isSameContent(const Candidate &candidate, const DatabaseFile &file)
{
    if (candidate.isHyperlink || file.internal == FileKind::hyperlink)
        return candidate.isHyperlink && file.internal == FileKind::hyperlink &&
               file.name == candidate.path.trimmed();
    if (candidate.checksum.size != file.size)
        return false;
    FileComparison comparison(*m_worker);
    // What cannot be compared is taken for equal by its checksum and size: it would come twice otherwise.
    if (file.internal == FileKind::internal)
        return comparison.compareWithBlocks(candidate.path, file.storageId, file.size) !=
               FileComparison::Different;
    return candidate.path == file.path ||
           comparison.compareFiles(candidate.path, file.path) != FileComparison::Different;
}

void DuplicateManager::settleContents(const FolderTags &folderTags,
                                      QHash<QString, QStringList> &inheritedTags)
{
    std::sort(m_contents.begin(), m_contents.end(), [](const Content &left, const Content &right) {
        return left.members.first() < right.members.first();
    });
    for (const Content &content : qAsConst(m_contents)) {
        if (content.databaseFiles.isEmpty()) {
            if (content.members.size() > 1)
                keepOne(content, folderTags, inheritedTags);
            continue;
        }
        DuplicateMatch match;
        match.databaseFiles = databaseInfos(content.databaseFiles);
        match.addedFiles.reserve(content.members.size());
        for (const int index : content.members) {
            m_candidates[index].isAdded = false;
            match.addedFiles.append(info(index, folderTags));
        }
        m_duplicates.contentMatches.append(match);
    }
}

void DuplicateManager::keepOne(const Content &content, const FolderTags &folderTags,
                               QHash<QString, QStringList> &inheritedTags)
{
    QStringList paths;
    QStringList names;
    for (const int index : content.members) {
        paths.append(m_candidates.at(index).path);
        names.append(folderTags.namesFor(paths.last()));
    }
    names.removeDuplicates();
    const int kept = content.members.at(paths.indexOf(chooseFileToKeep(paths)));
    ExternalDuplicateGroup group;
    for (const int index : content.members) {
        Candidate &candidate = m_candidates[index];
        candidate.isAdded = index == kept;
        if (index != kept)
            group.ignoredFiles.append(info(index, folderTags));
    }
    group.keptFile = info(kept, folderTags);
    m_candidates[kept].group = m_duplicates.externalDuplicateGroups.size();
    if (!names.isEmpty())
        inheritedTags.insert(m_candidates.at(kept).path, names);
    m_duplicates.externalDuplicateGroups.append(group);
}

bool DuplicateManager::takeOutNameMatches(const FolderTags &folderTags)
{
    emit operationProgress(FileOperationType::AddFilesOperation, tr("Grouping name duplicates"), wholeBand);
    // Behind the contents: of equal files only the one that is kept can double a name.
    QHash<QString, QVector<int>> byName;
    QStringList names;
    for (int i = 0; i < m_candidates.size(); ++i) {
        const Candidate &candidate = m_candidates.at(i);
        if (!candidate.isAdded)
            continue;
        const QString &path = candidate.path;
        const QString name = candidate.isHyperlink ? path : path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
        QVector<int> &ofName = byName[name.trimmed()];
        if (ofName.isEmpty())
            names.append(name.trimmed());
        ofName.append(i);
    }
    QHash<QString, QVector<qint64>> idsOfNames;
    if (!idsByName(names, idsOfNames))
        return false;
    for (const QString &name : qAsConst(names)) {
        const QVector<int> members = byName.value(name);
        const QVector<qint64> ids = idsOfNames.value(name);
        if (members.size() < 2 && ids.isEmpty())
            continue;
        DuplicateMatch match;
        match.databaseFiles = databaseInfos(ids);
        match.addedFiles.reserve(members.size());
        for (const int index : members) {
            Candidate &candidate = m_candidates[index];
            // Whether it comes all the same is asked at the end; its group of equal files must not say that
            // it has come.
            candidate.isAdded = false;
            if (candidate.group >= 0)
                m_duplicates.externalDuplicateGroups[candidate.group].outcome =
                    ExternalDuplicateGroup::SharesName;
            match.addedFiles.append(info(index, folderTags));
        }
        m_duplicates.nameMatches.append(match);
    }
    return true;
}

bool DuplicateManager::idsByName(const QStringList &names, QHash<QString, QVector<qint64>> &ids)
{
    QHash<qint64, QString> namesByFile;
    if (names.isEmpty())
        return true;
    if (!m_worker->readFileNames(names, namesByFile))
        return false;
    for (auto it = namesByFile.cbegin(); it != namesByFile.cend(); ++it)
        ids[it.value()].append(it.key());
    return readDatabaseFiles(*m_worker, namesByFile.keys().toVector(), m_databaseFiles);
}

DuplicateFileInfo DuplicateManager::info(int index, const FolderTags &folderTags) const
{
    const Candidate &candidate = m_candidates.at(index);
    DuplicateFileInfo info;
    info.path = candidate.path;
    if (candidate.isHyperlink)
        return info;
    info.tagNames = folderTags.namesFor(candidate.path);
    info.size = candidate.checksum.size;
    info.lastModified = QDateTime::fromSecsSinceEpoch(candidate.checksum.modified);
    return info;
}

QVector<DuplicateFileInfo> DuplicateManager::databaseInfos(QVector<qint64> ids) const
{
    std::sort(ids.begin(), ids.end());
    QVector<DuplicateFileInfo> infos;
    infos.reserve(ids.size());
    for (const qint64 id : qAsConst(ids))
        infos.append(m_databaseFiles.value(id).info());
    return infos;
}

void DuplicateManager::reportExamining(int number, int percent, bool isLast)
{
    if (m_progress.isDue(percent, isLast))
        emit operationProgress(
            FileOperationType::AddFilesOperation,
            tr("Grouping by content...\nExamining file number  %1").arg(QLocale().toString(number)), percent);
}
