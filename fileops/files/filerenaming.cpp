#include "fileops/files/filerenaming.h"

#include "fileops/files/filemoves.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace {
namespace fs = std::filesystem;

// The path with another last component.
QString withName(const QString &path, const QString &name)
{
    if (path.isEmpty())
        return path;
    // Paths of Qt have no other separator; a backslash is a letter of a name.
    return QString(path.leftRef(path.lastIndexOf(QLatin1Char('/')) + 1) + name);
}

fs::path nativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return fs::path(path.toStdWString());
#else
    return fs::path(QFile::encodeName(path).toStdString());
#endif
}

bool exists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// What the locale has no bytes for would get question marks on the disk and its own name in the database.
bool isWritableAsBytes(const QString &path)
{
    return QFile::decodeName(QFile::encodeName(path)) == path;
}
} // namespace

FileRenaming::FileRenaming(const QString &path, const QString &relPath, const QString &newName)
    : m_path(path), m_newPath(withName(path, newName)), m_newRelPath(withName(relPath, newName))
{
}

FileRenaming::~FileRenaming()
{
    if (!m_isDone)
        return;
    if (!(isOwnNameInOtherCase() ? QFile::rename(m_newPath, m_path)
                                 : FileMoves::moveUnlessTaken(m_newPath, m_path)))
        qDebug() << "FileRenaming: could not give the old name back to" << m_newPath;
    else if (!m_backupPath.isEmpty() && !FileMoves::moveUnlessTaken(m_backupPath, m_newPath))
        qDebug() << "FileRenaming: what was replaced is left in" << m_backupPath;
}

bool FileRenaming::isNameTaken() const
{
    return exists(m_newPath) && !isOwnNameInOtherCase();
}

bool FileRenaming::isOwnNameInOtherCase() const
{
    const QFileInfo info(m_path);
    const QFileInfo newInfo(m_newPath);
    if (m_path == m_newPath || m_path.compare(m_newPath, Qt::CaseInsensitive) != 0 || !info.exists() ||
        !newInfo.exists())
        return false;
    // Elsewhere both names stand in the folder.
    const QStringList names = info.dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    return !(names.contains(info.fileName()) && names.contains(newInfo.fileName()));
}

bool FileRenaming::isReplaceable() const
{
    const QFileInfo target(m_newPath);
    return target.isFile() && target.canonicalFilePath() != QFileInfo(m_path).canonicalFilePath();
}

bool FileRenaming::run()
{
    if (m_path.isEmpty() || !isWritableAsBytes(m_newPath))
        return false;
    // The other case of the same name takes two steps, which QFile knows.
    m_isDone = isOwnNameInOtherCase() ? QFile::rename(m_path, m_newPath)
                                      : FileMoves::moveUnlessTaken(m_path, m_newPath);
    return m_isDone;
}

bool FileRenaming::runReplacing()
{
    if (!isReplaceable() || !QFileInfo::exists(m_path) || !backUpTarget())
        return false;
    m_isDone = FileMoves::moveOver(m_path, m_newPath);
    if (!m_isDone)
        removeBackup();
    return m_isDone;
}

bool FileRenaming::backUpTarget()
{
    // Of a name that is as long as names can be only the beginning, so that the rest fits.
    constexpr int mostLetters = 60;
    const QFileInfo target(m_newPath);
    const QString base = target.path() + QLatin1Char('/') + target.fileName().left(mostLetters);
    for (int n = 1; m_backupPath.isEmpty() || exists(m_backupPath); ++n)
        m_backupPath = base + QStringLiteral(".old%1").arg(n);
    std::error_code error;
    fs::create_hard_link(nativePath(m_newPath), nativePath(m_backupPath), error);
    // Not every disk has a second name for a file.
    if (!error || QFile::copy(m_newPath, m_backupPath))
        return true;
    m_backupPath.clear();
    return false;
}

void FileRenaming::removeBackup()
{
    if (!m_backupPath.isEmpty())
        QFile::remove(m_backupPath);
    m_backupPath.clear();
}

void FileRenaming::keep()
{
    m_isDone = false;
    removeBackup();
}
