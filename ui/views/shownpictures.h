#pragma once

#include <QObject>

class QAbstractItemView;
class QListView;
class QTableView;

/**
 * Tells how many files a view shows at once, as pictures that are thrown away while they are shown would have
 * to be loaded again and again. Belongs to the views; GUI thread.
 */
class ShownPictures : public QObject
{
    Q_OBJECT

public:
    /** All are borrowed. */
    ShownPictures(QListView *list, QTableView *table, QObject *parent);

signals:
    /** Before they are painted, each time. */
    void aboutToShow(int count);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int countIn(const QAbstractItemView *view) const;

    QListView *m_list;
    QTableView *m_table;
};
