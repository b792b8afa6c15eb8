#pragma once

#include <QStyledItemDelegate>

/**
 * Paints and edits the items of both file views. Sizes never depend on the item, so that laying out a million
 * of them asks for no picture. GUI thread.
 */
class Delegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit Delegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /** The size of an item of the thumbnail list. */
    static QSize thumbnailItemSize(const QStyleOptionViewItem &option);

signals:
    void finishedEditing();
    void escPressed();
    void focusLost();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    void abandon(QWidget *editor);
};
