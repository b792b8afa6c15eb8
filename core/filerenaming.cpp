#include "core/filerenaming.h"

#include <QDebug>
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
    const int separator = qMax(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return QString(path.leftRef(separator + 1) + name);
}

fs::path nativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return fs::path(path.toStdWString());
#else
    return fs::path(QFile::encodeName(path).toStdString());
#endif
}

bool moveOver(const QString &from, const QString &to)
{
    std::error_code error;
    fs::rename(nativePath(from), nativePath(to), error);
    return !error;
}

bool exists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
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
    if (!QFile::rename(m_newPath, m_path))
        qDebug() << "FileRenaming: could not give the old name back to" << m_newPath;
    else if (!m_backupPath.isEmpty() && !QFile::rename(m_backupPath, m_newPath))
        qDebug() << "FileRenaming: what was replaced is left in" << m_backupPath;
}

bool FileRenaming::isNameTaken() const
{
    return exists(m_newPath);
}

bool FileRenaming::isReplaceable() const
{
    const QFileInfo target(m_newPath);
    return target.isFile() && target.canonicalFilePath() != QFileInfo(m_path).canonicalFilePath();
}

bool FileRenaming::run()
{
    m_isDone = !m_path.isEmpty() && QFile::rename(m_path, m_newPath);
    return m_isDone;
}

bool FileRenaming::runReplacing()
{
    if (!isReplaceable() || !QFileInfo::exists(m_path) || !backUpTarget())
        return false;
    m_isDone = moveOver(m_path, m_newPath);
    if (!m_isDone)
        removeBackup();
    return m_isDone;
}

bool FileRenaming::backUpTarget()
{
    for (int n = 1; m_backupPath.isEmpty() || exists(m_backupPath); ++n)
        m_backupPath = m_newPath + QStringLiteral(".old%1").arg(n);
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
