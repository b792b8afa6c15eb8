#pragma once

#include "ui/widgets/delegate.h"

/**
 * Shows the column of check boxes of the browsing trees as radio buttons, as only one tree is shown at a
 * time. Each button is a persistent editor that the view opens. GUI thread.
 */
class BrowsingTreesDelegate : public Delegate
{
    Q_OBJECT

public:
    /** The property of a button that holds its row. */
    static const char *const indexProperty;

    explicit BrowsingTreesDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    /** A click beside the button means the button. */
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
