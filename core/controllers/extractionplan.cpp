#include "core/controllers/extractionplan.h"

#include "core/controllers/miscoperationthread.h"
#include "fileops/contents/filechecksums.h"
#include "fileops/files/filenames.h"

namespace {
constexpr int givenToNobody = -1;
} // namespace

ExtractionPlan::ExtractionPlan(const QString &folder, const QVector<Source> &sources)
    : m_folder(folder), m_sources(sources)
{
    for (Source &source : m_sources)
        // The database may come from anywhere, and its names must not lead out of the folder.
        source.name = Database::safeFileName(source.name);
}

QString ExtractionPlan::pathOf(const QString &name) const
{
    return Database::pathIn(m_folder, name);
}

bool ExtractionPlan::compare(const ShouldEnd &shouldEnd)
{
    QVector<State> states;
    states.reserve(m_sources.size());
    for (int i = 0; i < m_sources.size(); ++i) {
        if (shouldEnd())
            return false;
        const Source &source = m_sources.at(i);
        states.append(lookAt(source));
        if (states.last() != Free)
            continue;
        m_given.insert(source.name, i);
        addTarget(source.fileId, pathOf(source.name));
    }
    // All that have to be read are read together.
    if (!readPresent(states, shouldEnd))
        return false;
    // New names come last, when all names that are given anyway are known.
    for (int i = 0; i < m_sources.size(); ++i) {
        const Source &source = m_sources.at(i);
        if (states.at(i) == Conflict) {
            addConflict(source);
        } else if (states.at(i) == Alike) {
            addTarget(source.fileId, pathOf(source.name));
            m_comparedPaths.insert(pathOf(source.name));
        }
    }
    return true;
}

ExtractionPlan::State ExtractionPlan::lookAt(const Source &source)
{
    // A file of the same extraction counts as if it stood in the folder by now.
    const auto given = m_given.constFind(source.name);
    if (given != m_given.constEnd()) {
        const Source &other = m_sources.at(*given);
        return other.size == source.size && other.checksum == source.checksum ? Alike : Conflict;
    }
    const QString target = pathOf(source.name);
    if (!Database::isTaken(target))
        return Free;
    // Extracted into its own folder a file is there already.
    if (!source.path.isEmpty() && RegularFile::isSame(source.path, target))
        return Present;
    return RegularFile::stampOf(target).size == source.size ? Unread : Conflict;
}

bool ExtractionPlan::readPresent(QVector<State> &states, const ShouldEnd &shouldEnd) const
{
    QVector<int> places;
    QStringList paths;
    for (int i = 0; i < states.size(); ++i) {
        if (states.at(i) != Unread)
            continue;
        places.append(i);
        paths.append(pathOf(m_sources.at(i).name));
    }
    bool isEnded = false;
    const QVector<FileChecksum> found = FileChecksums::ofFiles(paths, [&] {
        isEnded = isEnded || shouldEnd();
        return isEnded;
    });
    for (int i = 0; i < places.size(); ++i) {
        const Source &source = m_sources.at(places.at(i));
        const FileChecksum &there = found.at(i);
        const bool isSame =
            there.isRead && there.size == source.size && qint64(there.checksum) == source.checksum;
        states[places.at(i)] = isSame ? Alike : Conflict;
    }
    return !isEnded;
}

void ExtractionPlan::addConflict(const Source &source)
{
    const auto isGivenOrTaken = [this](const QString &name) {
        return m_given.contains(name) || Database::isTaken(pathOf(name));
    };
    // Thousands of files of one name would otherwise count from 1 for each of them.
    int &number = m_numbers[source.name];
    number = qMax(number, 1);
    const QString name = Database::numberableFileName(source.name);
    // The folder holds the name, or will: no need to look at it again, nor at what was counted through.
    const QString newName = Database::uniqueFileName(
        name, [&](const QString &tried) { return tried == source.name || isGivenOrTaken(tried); }, number);
    m_given.insert(newName, givenToNobody);
    m_conflicts.append({source.fileId, source.name, newName});
}

void ExtractionPlan::settle(qint64 fileId, int choice)
{
    for (const FileConflict &conflict : qAsConst(m_conflicts)) {
        if (conflict.fileId != fileId)
            continue;
        const QString path = pathOf(conflict.name);
        // What this extraction brings itself is nobody's to replace: all of its files are wanted.
        const bool isBrought = m_given.contains(conflict.name) || m_replacedPaths.contains(path) ||
                               m_comparedPaths.contains(path);
        if (choice == MiscOperationThread::ReplaceChoice && !isBrought) {
            addTarget(fileId, path);
            m_replacedPaths.insert(path);
        } else if (choice != MiscOperationThread::CancelChoice) {
            addTarget(fileId, pathOf(conflict.newName));
        }
        return;
    }
}

void ExtractionPlan::addTarget(qint64 fileId, const QString &path)
{
    m_fileIds.append(fileId);
    m_targetPaths.append(path);
}
