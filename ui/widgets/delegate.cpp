#include "ui/widgets/delegate.h"

#include "app/settings/showntext.h"
#include "ui/widgets/hitmark.h"
#include "ui/widgets/itemtext.h"
#include "ui/widgets/kepttext.h"
#include "ui/widgets/speciallineedit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTableView>
#include <QTextLayout>

namespace {

// Below this no name could be read.
constexpr int leastTextWidth = 88;
constexpr int margin = 4;

/** A name of any length in the two lines below a thumbnail, the second of which shows its end. */
QString inTwoLines(const QString &name, const QStyleOptionViewItem &option, int width)
{
    QTextLayout layout(name, option.font);
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrapping);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid())
        line.setLineWidth(width);
    layout.endLayout();
    const int first = line.isValid() ? line.textLength() : 0;
    if (first == name.size())
        return name;
    return name.left(first) + QChar(QChar::LineSeparator) +
           option.fontMetrics.elidedText(name.mid(first), Qt::ElideMiddle, width);
}

bool isInTable(const QStyleOptionViewItem &option)
{
    return qobject_cast<const QTableView *>(option.widget) != nullptr;
}

} // namespace

Delegate::Delegate(QObject *parent) : QStyledItemDelegate(parent), m_kept(new KeptText(this)) {}

void Delegate::setIdRole(int role)
{
    m_kept->setIdRole(role);
}

bool Delegate::showsPictureAlone(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return isInTable(option) && index.column() == m_pictureColumn;
}

QWidget *Delegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    if (showsPictureAlone(option, index))
        return nullptr;
    auto *editor = new SpecialLineEdit(parent);
    editor->setFrame(false);
    editor->setAutoFillBackground(true);
    if (!isInTable(option))
        editor->setAlignment(Qt::AlignHCenter);
    editor->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    // The toolkit hands out editors from a const function, yet news of them goes through this object.
    auto *self = const_cast<Delegate *>(this);
    connect(editor, &QLineEdit::returnPressed, self, &Delegate::finishedEditing);
    connect(editor, &SpecialLineEdit::focusLost, self, &Delegate::focusLost);
    connect(editor, &SpecialLineEdit::escPressed, self, [self, editor] { self->abandon(editor); });
    return editor;
}

void Delegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *edit = qobject_cast<QLineEdit *>(editor);
    if (edit && edit->isModified())
        return;
    if (!edit || !m_kept->isOf(index)) {
        QStyledItemDelegate::setEditorData(editor, index);
        return;
    }
    edit->setText(m_kept->text());
    edit->selectAll();
}

void Delegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *edit = qobject_cast<QLineEdit *>(editor);
    // To try it once more takes a key: the box about it has the focus each time.
    if (edit && m_isFocusLost && !edit->isModified() && m_kept->isOf(index))
        return;
    const QPersistentModelIndex cell(index);
    const QVariant before = index.data(Qt::EditRole);
    QStyledItemDelegate::setModelData(editor, model, index);
    if (edit)
        m_kept->note(*edit, cell, before);
}

void Delegate::abandon(QWidget *editor)
{
    m_kept->forget();
    emit closeEditor(editor, RevertModelCache);
    emit escPressed();
}

void Delegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const
{
    if (isInTable(option)) {
        editor->setGeometry(option.rect);
        return;
    }
    Q_UNUSED(index)
    const int height = editor->sizeHint().height();
    QRect rect = option.rect.adjusted(margin, 0, -margin, -margin);
    rect.setTop(rect.bottom() - height + 1);
    editor->setGeometry(rect);
}

QSize Delegate::thumbnailItemSize(const QStyleOptionViewItem &option)
{
    const int textHeight = 2 * option.fontMetrics.lineSpacing();
    return {qMax(leastTextWidth, option.decorationSize.width()) + 2 * margin,
            option.decorationSize.height() + textHeight + 3 * margin};
}

QString Delegate::displayText(const QVariant &value, const QLocale &locale) const
{
    return ShownText::cut(QStyledItemDelegate::displayText(value, locale));
}

void Delegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QString hit = m_hitOf ? m_hitOf(index) : QString();
    if (hit.isEmpty() || showsPictureAlone(option, index))
        return;
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    HitMark::paint(painter, shown, hit);
}

QString Delegate::shownText(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QVariant value = index.data();
    return isInTable(option) && index.column() == m_sizeColumn
               ? option.locale.formattedDataSize(value.toLongLong())
               : displayText(value, option.locale);
}

QSize Delegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (!isInTable(option))
        return thumbnailItemSize(option);
    if (showsPictureAlone(option, index))
        return option.decorationSize + QSize(2 * margin, 2 * margin);
    const QString text = shownText(option, index);
    return {option.fontMetrics.horizontalAdvance(text) + 4 * margin,
            option.fontMetrics.height() + 2 * margin};
}

// An icon is only made smaller by itself.
void Delegate::enlargePicture(QStyleOptionViewItem *option)
{
    const QSize stored = option->icon.availableSizes().value(0);
    if (stored.isEmpty() || stored.width() >= option->decorationSize.width() ||
        stored.height() >= option->decorationSize.height())
        return;
    option->icon = QIcon(option->icon.pixmap(stored).scaled(option->decorationSize, Qt::KeepAspectRatio,
                                                            Qt::SmoothTransformation));
}

void Delegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    const QSize decorationSize = option->decorationSize;
    QStyledItemDelegate::initStyleOption(option, index);
    // The base takes the size of the picture; all items keep that of the view instead.
    option->decorationSize = decorationSize;
    if (showsPictureAlone(*option, index)) {
        option->text.clear();
        option->features &= ~QStyleOptionViewItem::HasDisplay;
        option->decorationAlignment = Qt::AlignCenter;
    } else if (!isInTable(*option)) {
        const QString name = ShownText::cut(index.data(m_nameRole).toString());
        option->text =
            inTwoLines(name, *option, thumbnailItemSize(*option).width() - 2 * ItemText::margin(*option));
        enlargePicture(option);
        option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
    } else if (index.column() == m_sizeColumn) {
        // The space keeps it off the next column.
        option->text = shownText(*option, index) + QChar(0x2002);
        option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    }
}

bool Delegate::eventFilter(QObject *object, QEvent *event)
{
    // The base swallows Esc; here the editor itself hears of it and tells.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
        return false;
    const QScopedValueRollback<bool> focusLost(m_isFocusLost, event->type() == QEvent::FocusOut);
    return QStyledItemDelegate::eventFilter(object, event);
}
