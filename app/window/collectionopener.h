#pragma once

#include <QCoreApplication>

class Collection;
class QElapsedTimer;
class QWidget;

/**
 * Opens a collection and reads its records. A large database is read while the event loop goes on, behind a
 * box with its progress and a way out. Another program that keeps the database locked is waited for, for a
 * while and as long as the user likes; then it is told. GUI thread.
 */
class CollectionOpener
{
    Q_DECLARE_TR_FUNCTIONS(CollectionOpener)

public:
    static constexpr int usualPatience = 10000;

    /** How long a lock is waited for, in milliseconds. */
    explicit CollectionOpener(QWidget *window, int patience = usualPatience)
        : m_window(window), m_patience(patience)
    {
    }

    /** False when the collection cannot be used and is to be closed again. */
    bool open(Collection &collection);
    /** Whether the user has ended it, who need not be told then. */
    bool wasCanceled() const { return m_wasCanceled; }

private:
    bool load(Collection &collection);
    bool outwaitLock(Collection &collection, const QElapsedTimer &waited, int &loading);
    bool awaitFiles(Collection &collection);

    QWidget *m_window;
    int m_patience;
    bool m_wasCanceled = false;
};
