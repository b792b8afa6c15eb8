#include "db/autolinks/foldermatch.h"

#include "core/records/file.h"
#include "core/records/filekind.h"
#include "fileops/files/filenames.h"

#include <QElapsedTimer>

#include <limits>

namespace {
constexpr int recordsBetweenLooks = 1024;
constexpr qint64 nanoseconds = 1000000000;

qint64 inSeconds(qint64 modified)
{
    const qint64 seconds = modified / nanoseconds;
    return modified % nanoseconds < 0 ? seconds - 1 : seconds;
}

/** Disks and databases round differently: a stored time stands for its following second, too. */
bool isUnchanged(const File &record, const FileStamp &stamp)
{
    const qint64 later = inSeconds(stamp.modified) - record.modificationSeconds();
    return record.size() == stamp.size && (later == 0 || later == 1);
}
} // namespace

FolderMatch::FolderMatch(QVector<LinkedFolder> folders)
    : m_folders(std::move(folders)), m_lastId(std::numeric_limits<qint64>::min())
{
    for (int folder = 0; folder < m_folders.size(); ++folder) {
        const QVector<LinkedFile> &files = qAsConst(m_folders)[folder].files;
        for (int i = 0; i < files.size(); ++i) {
            // As records have it: without blanks at its ends.
            const QString name = files.at(i).file.name.trimmed();
            m_sizes.insert(files.at(i).file.stamp.size);
            m_places.append({folder, i, m_placeOfName.value(name, -1)});
            m_placeOfName.insert(name, m_places.size() - 1);
        }
    }
}

bool FolderMatch::walk(const Map<qint64, File *> &records, int milliseconds)
{
    if (m_places.isEmpty())
        return true;
    QElapsedTimer passed;
    passed.start();
    const QMap<qint64, File *> &items = records.items();
    int count = 0;
    for (auto record = items.upperBound(m_lastId); record != items.constEnd(); ++record) {
        compare(**record);
        m_lastId = record.key();
        if (++count % recordsBetweenLooks == 0 && passed.hasExpired(milliseconds))
            return false;
    }
    return true;
}

void FolderMatch::compare(const File &record)
{
    // Of another size it is another file, or has changed. A number is found faster than a name.
    if (!m_sizes.contains(record.size()) || record.internal() == FileKind::hyperlink)
        return;
    const auto compareNamed = [this, &record](const QString &name) {
        for (int place = m_placeOfName.value(name, -1); place >= 0; place = m_places.at(place).next) {
            LinkedFolder &folder = m_folders[m_places.at(place).folder];
            compare(record, folder, folder.files[m_places.at(place).file]);
        }
    };
    compareNamed(record.name());
    // A file that has another name in the database than on the disk.
    if (record.internal() != FileKind::external || record.isNamedAsItsPath())
        return;
    const QString path = record.path();
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1).trimmed();
    if (name != record.name())
        compareNamed(name);
}

void FolderMatch::compare(const File &record, const LinkedFolder &folder, LinkedFile &file) const
{
    if (file.state == LinkedFile::Known)
        return;
    const bool isOfPath = record.internal() == FileKind::external &&
                          (record.path() == Database::pathIn(folder.path, file.file.name) ||
                           record.relPath() == Database::pathIn(folder.relPath, file.file.name));
    if (isOfPath)
        file.recordId = record.id();
    if (isOfPath && isUnchanged(record, file.file.stamp)) {
        file.state = LinkedFile::Known;
    } else if (record.size() == file.file.stamp.size) {
        file.state = LinkedFile::Suspect;
        if (isOfPath || !file.idsByChecksum.contains(record.checksum()))
            file.idsByChecksum.insert(record.checksum(), record.id());
    }
}
