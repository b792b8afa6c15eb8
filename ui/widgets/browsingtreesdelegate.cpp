#include "ui/widgets/browsingtreesdelegate.h"

#include "app/settings/showntext.h"
#include "models/trees/browsingtreetablemodel.h"

#include <QEvent>
#include <QMouseEvent>
#include <QRadioButton>
#include <QStyle>

const char *const BrowsingTreesDelegate::indexProperty = "radiobutton_index";

namespace {
bool isButtonColumn(const QModelIndex &index)
{
    return index.column() == BrowsingTreeTableModel::SelectColumn;
}
} // namespace

BrowsingTreesDelegate::BrowsingTreesDelegate(QObject *parent) : Delegate(parent) {}

QWidget *BrowsingTreesDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    if (!isButtonColumn(index))
        return Delegate::createEditor(parent, option, index);
    auto *button = new QRadioButton(parent);
    button->setProperty(indexProperty, index.row());
    // The keyboard walks through the rows of the table; the arrow keys in a button would show tree by tree.
    button->setFocusPolicy(Qt::NoFocus);
    auto *self = const_cast<BrowsingTreesDelegate *>(this);
    connect(button, &QRadioButton::clicked, self, [self, button] { emit self->commitData(button); });
    return button;
}

void BrowsingTreesDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                 const QModelIndex &index) const
{
    if (!isButtonColumn(index)) {
        Delegate::updateEditorGeometry(editor, option, index);
        return;
    }
    editor->setGeometry(QStyle::alignedRect(option.direction, Qt::AlignCenter,
                                            editor->sizeHint().boundedTo(option.rect.size()), option.rect));
}

void BrowsingTreesDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *button = qobject_cast<QRadioButton *>(editor);
    if (!button) {
        Delegate::setEditorData(editor, index);
        return;
    }
    const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    // A button that belongs with others cannot be unchecked by itself.
    button->setAutoExclusive(false);
    button->setChecked(isChecked);
    button->setAutoExclusive(true);
    button->setAccessibleName(index.data(Qt::AccessibleTextRole).toString());
    button->setToolTip(ShownText::toolTip(button->accessibleName()));
}

void BrowsingTreesDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                         const QModelIndex &index) const
{
    if (!isButtonColumn(index)) {
        Delegate::setModelData(editor, model, index);
        return;
    }
    const QPersistentModelIndex row(index);
    model->setData(index, Qt::Checked, Qt::CheckStateRole);
    // A tree that cannot be shown leaves its button as it was.
    if (row.isValid())
        setEditorData(editor, row);
}

bool BrowsingTreesDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                        const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (!isButtonColumn(index))
        return Delegate::editorEvent(event, model, option, index);
    const bool isClick = event->type() == QEvent::MouseButtonRelease &&
                         static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
    return isClick && model->setData(index, Qt::Checked, Qt::CheckStateRole);
}

void BrowsingTreesDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    Delegate::initStyleOption(option, index);
    if (isButtonColumn(index))
        option->features &= ~QStyleOptionViewItem::HasCheckIndicator;
}
