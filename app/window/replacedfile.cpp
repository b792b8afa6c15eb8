#include "app/window/replacedfile.h"

#include <QFile>

namespace {

// What a database that was not closed well needs to be whole again.
QString journalOf(const QString &path)
{
    return path + QStringLiteral("-journal");
}

void moveWithJournal(const QString &from, const QString &to)
{
    if (QFile::rename(from, to))
        QFile::rename(journalOf(from), journalOf(to));
}

} // namespace

void ReplacedFile::removeDatabase(const QString &path)
{
    QFile::remove(path);
    QFile::remove(journalOf(path));
}

ReplacedFile::~ReplacedFile()
{
    if (m_asidePath.isEmpty())
        return;
    removeDatabase(m_path);
    moveWithJournal(m_asidePath, m_path);
}

bool ReplacedFile::setAside()
{
    QString aside;
    int number = 0;
    do
        aside = m_path + QStringLiteral(".replaced") + QString::number(++number);
    while (QFile::exists(aside) || QFile::exists(journalOf(aside)));
    moveWithJournal(m_path, aside);
    if (QFile::exists(m_path))
        return false;
    m_asidePath = aside;
    return true;
}

void ReplacedFile::discard()
{
    if (m_asidePath.isEmpty())
        return;
    removeDatabase(m_asidePath);
    m_asidePath.clear();
}
