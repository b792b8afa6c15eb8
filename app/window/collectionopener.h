#pragma once

#include <QCoreApplication>

class Collection;
class QWidget;

/**
 * Opens a collection and reads its records. Another program that keeps the database locked is waited for, for
 * a while and as long as the user likes, with the window alive; then it is told. GUI thread.
 */
class CollectionOpener
{
    Q_DECLARE_TR_FUNCTIONS(CollectionOpener)

public:
    explicit CollectionOpener(QWidget *window) : m_window(window) {}

    /** False when the collection cannot be used and is to be closed again. */
    bool open(Collection &collection) const;

private:
    bool load(Collection &collection) const;

    QWidget *m_window;
};
