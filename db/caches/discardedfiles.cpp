#include "db/caches/discardedfiles.h"

#include "core/records/file.h"

#include <QElapsedTimer>

DiscardedFiles::DiscardedFiles(QObject *parent) : QObject(parent) {}

DiscardedFiles::~DiscardedFiles()
{
    qDeleteAll(m_files);
}

void DiscardedFiles::add(const QList<File *> &files)
{
    m_files += files;
    freeSome();
}

void DiscardedFiles::timerEvent(QTimerEvent *)
{
    freeSome();
}

void DiscardedFiles::freeSome()
{
    constexpr int milliseconds = 8;
    constexpr int filesBetweenLooks = 256;
    QElapsedTimer timer;
    timer.start();
    while (!m_files.isEmpty() && !timer.hasExpired(milliseconds)) {
        for (int i = 0; i < filesBetweenLooks && !m_files.isEmpty(); ++i)
            delete m_files.takeLast();
    }
    if (m_files.isEmpty())
        m_next.stop();
    else if (!m_next.isActive())
        m_next.start(0, this);
}
