#pragma once

#include <QStyledItemDelegate>

class FileCount;

/**
 * Paints the rows of a tree with numbers of files at the edge of the view, wherever the tree is scrolled to.
 * Names go first: where one leaves no room, its tool tip tells the number. GUI thread.
 */
class TreeCountDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /** The role of the model that has the FileCount. */
    explicit TreeCountDelegate(int countRole, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    FileCount countOf(const QModelIndex &index) const;
    bool fits(const QStyleOptionViewItem &option, const FileCount &count) const;

    int m_countRole;
};
