#include "fileops/files/temporarycopies.h"

#include "fileops/files/lockedfile.h"
#include "fileops/files/partfile.h"

#include <QDir>
#include <QHash>
#include <QMutex>
#include <QVector>

#include <sys/stat.h>
#include <unistd.h>

namespace {
const QString ending = QStringLiteral(".copies");
constexpr qint64 nanoseconds = 1000000000;

/** By what a copy is known again. */
struct Mark
{
    quint64 device = 0;
    quint64 node = 0;
    qint64 size = -1; ///< -1 while it is being written, and of folders
    qint64 modified = 0;
    bool isFolder = false;
};

struct Copies
{
    QMutex mutex;
    bool isKept = false;
    LockedFile record;
    QHash<QString, Mark> marks;
};

Copies &copies()
{
    static Copies all;
    return all;
}

bool look(const QString &path, Mark &mark)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0 || status.st_uid != ::geteuid() ||
        !(S_ISDIR(status.st_mode) || (S_ISREG(status.st_mode) && status.st_nlink == 1)))
        return false;
    mark.isFolder = S_ISDIR(status.st_mode);
    mark.device = status.st_dev;
    mark.node = status.st_ino;
    mark.size = mark.isFolder ? -1 : status.st_size;
    mark.modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec;
    return true;
}

/** Whether what is there now is what was noted, and nobody has written to it since. */
bool isUntouched(const Mark &noted, const Mark &now)
{
    return noted.device == now.device && noted.node == now.node && noted.isFolder == now.isFolder &&
           (noted.size < 0 || (noted.size == now.size && noted.modified == now.modified));
}

QByteArray lineOf(const QString &path, const Mark &mark)
{
    return QByteArray::number(mark.isFolder ? 1 : 0) + ' ' + QByteArray::number(mark.device) + ' ' +
           QByteArray::number(mark.node) + ' ' + QByteArray::number(mark.size) + ' ' +
           QByteArray::number(mark.modified) + ' ' + QFile::encodeName(path).toHex() + '\n';
}

QHash<QString, Mark> marksIn(QFile &record)
{
    constexpr int fields = 6;
    constexpr qint64 longestLine = 65536;
    QHash<QString, Mark> marks;
    while (!record.atEnd()) {
        const QList<QByteArray> parts = record.readLine(longestLine).trimmed().split(' ');
        if (parts.size() != fields)
            continue;
        const Mark mark{parts.at(1).toULongLong(), parts.at(2).toULongLong(), parts.at(3).toLongLong(),
                        parts.at(4).toLongLong(), parts.at(0) == "1"};
        marks.insert(QFile::decodeName(QByteArray::fromHex(parts.at(5))), mark);
    }
    return marks;
}

void removeUntouched(const QHash<QString, Mark> &marks)
{
    for (const bool isFolder : {false, true}) {
        for (auto noted = marks.cbegin(); noted != marks.cend(); ++noted) {
            Mark now;
            if (noted->isFolder != isFolder || !look(noted.key(), now) || !isUntouched(*noted, now))
                continue;
            if (isFolder)
                PartFile::removeLeftovers(noted.key());
            const QByteArray name = QFile::encodeName(noted.key());
            isFolder ? ::rmdir(name.constData()) : ::unlink(name.constData());
        }
    }
}

void note(const QString &path, bool isBeingWritten)
{
    Copies &all = copies();
    const QMutexLocker locker(&all.mutex);
    Mark mark;
    if (!all.isKept || !look(path, mark))
        return;
    if (isBeingWritten)
        mark.size = -1;
    all.marks.insert(path, mark);
    QFile &record = all.record.device();
    // Without a record the copies still go at the end, only not after a crash.
    if (record.isOpen() || all.record.open(QDir::tempPath(), ending, LockedFile::ForOwner)) {
        record.write(lineOf(path, mark));
        record.flush();
    }
}
} // namespace

TemporaryCopies::TemporaryCopies()
{
    const QMutexLocker locker(&copies().mutex);
    copies().isKept = true;
}

TemporaryCopies::~TemporaryCopies()
{
    Copies &all = copies();
    const QMutexLocker locker(&all.mutex);
    removeUntouched(all.marks);
    if (all.record.device().isOpen())
        all.record.remove();
    all.marks.clear();
    all.isKept = false;
}

void TemporaryCopies::noteBegun(const QString &path)
{
    note(path, true);
}

void TemporaryCopies::noteWritten(const QString &path)
{
    note(path, false);
}

void TemporaryCopies::noteFolder(const QString &path)
{
    note(path, false);
}

void TemporaryCopies::remove(const QStringList &paths, const QString &folder)
{
    Copies &all = copies();
    const QMutexLocker locker(&all.mutex);
    QHash<QString, Mark> marks;
    for (const QString &path : paths + QStringList(folder)) {
        const auto noted = all.marks.constFind(path);
        if (noted != all.marks.cend())
            marks.insert(path, *noted);
    }
    // What stays, because somebody has changed it, is asked about again at the end.
    removeUntouched(marks);
}

void TemporaryCopies::removeLeftovers()
{
    LockedFile::removeLeftovers(QDir::tempPath(), ending, [](const QString &path) {
        QFile record(path);
        if (record.open(QIODevice::ReadOnly))
            removeUntouched(marksIn(record));
    });
}
