#include "core/filerenaming.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {
// The path with another last component.
QString withName(const QString &path, const QString &name)
{
    if (path.isEmpty())
        return path;
    const int separator = qMax(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return QString(path.leftRef(separator + 1) + name);
}
} // namespace

FileRenaming::FileRenaming(const QString &path, const QString &relPath, const QString &newName)
    : m_path(path), m_newPath(withName(path, newName)), m_newRelPath(withName(relPath, newName))
{
}

FileRenaming::~FileRenaming()
{
    if (m_isDone && !QFile::rename(m_newPath, m_path))
        qDebug() << "FileRenaming: could not give the old name back to" << m_newPath;
}

bool FileRenaming::isNameTaken() const
{
    const QFileInfo info(m_newPath);
    return info.exists() || info.isSymLink();
}

bool FileRenaming::run()
{
    m_isDone = !m_path.isEmpty() && QFile::rename(m_path, m_newPath);
    return m_isDone;
}
