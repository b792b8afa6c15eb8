#pragma once

#include <QStyledItemDelegate>

/** Paints the rows of a NameMatchModel: names across the whole row, the files below them moved in. */
class NameMatchDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    void paintName(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
};
