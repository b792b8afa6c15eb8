#include "ui/widgets/mnemonics.h"

#include <QAbstractButton>
#include <QDialog>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMap>
#include <QStackedWidget>
#include <QTabBar>
#include <QTextDocument>
#include <QVariant>

namespace {

constexpr QChar mark(u'&');

/** The one letter that is marked; a null one without. */
QChar letterOf(const QString &text)
{
    for (int at = text.indexOf(mark); at >= 0 && at + 1 < text.size(); at = text.indexOf(mark, at + 2)) {
        if (text.at(at + 1) != mark)
            return text.at(at + 1).toUpper();
    }
    return {};
}

QString withoutMark(const QString &text)
{
    QString plain = text;
    for (int at = plain.indexOf(mark); at >= 0; at = plain.indexOf(mark, at + 1)) {
        if (at + 1 < plain.size() && plain.at(at + 1) == mark)
            ++at;
        else
            plain.remove(at--, 1);
    }
    return plain;
}

/** Where a letter that is free can be marked: at the beginning of a word, else anywhere; -1 for nowhere. */
int placeIn(const QString &text, const QSet<QChar> &taken)
{
    int within = -1;
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isLetterOrNumber() || taken.contains(text.at(i).toUpper()))
            continue;
        if (i == 0 || !text.at(i - 1).isLetterOrNumber())
            return i;
        if (within < 0)
            within = i;
    }
    return within;
}

/** Some dialogs are plain windows, as they stand beside the main window. */
bool isDialog(const QWidget &widget)
{
    return (widget.windowType() == Qt::Dialog || widget.windowType() == Qt::Window) &&
           !widget.inherits("QMainWindow");
}

QWidget *widgetOf(QLayoutItem *item)
{
    return item ? item->widget() : nullptr;
}

void makeBuddies(QWidget *left, QWidget *right)
{
    auto *label = qobject_cast<QLabel *>(left);
    const bool isField = right && right->focusPolicy() != Qt::NoFocus && !right->inherits("QAbstractButton");
    if (label && !label->buddy() && isField)
        label->setBuddy(right);
}

/** Labels of forms belong to the fields beside them, which forms made by the designer do not say. */
void makeBuddies(const QWidget *dialog)
{
    for (const auto *form : dialog->findChildren<QFormLayout *>()) {
        for (int row = 0; row < form->rowCount(); ++row)
            makeBuddies(widgetOf(form->itemAt(row, QFormLayout::LabelRole)),
                        widgetOf(form->itemAt(row, QFormLayout::FieldRole)));
    }
    for (const auto *grid : dialog->findChildren<QGridLayout *>()) {
        for (int row = 0; row < grid->rowCount(); ++row) {
            for (int column = 1; column < grid->columnCount(); ++column)
                makeBuddies(widgetOf(grid->itemAtPosition(row, column - 1)),
                            widgetOf(grid->itemAtPosition(row, column)));
        }
    }
}

bool hasLetter(const QObject *object)
{
    if (const auto *label = qobject_cast<const QLabel *>(object))
        return label->buddy() && !Qt::mightBeRichText(label->text());
    const auto *group = qobject_cast<const QGroupBox *>(object);
    return group ? group->isCheckable() : qobject_cast<const QAbstractButton *>(object) != nullptr;
}

const char *textProperty(const QObject *object)
{
    return qobject_cast<const QGroupBox *>(object) ? "title" : "text";
}

/** The page that a control lies on, null for those that are always shown. */
const QWidget *pageOf(const QWidget *control, const QWidget *dialog)
{
    for (const QWidget *part = control; part && part != dialog; part = part->parentWidget()) {
        if (qobject_cast<const QStackedWidget *>(part->parentWidget()))
            return part;
    }
    return nullptr;
}

void giveAll(const QWidgetList &controls, QSet<QChar> &taken)
{
    QStringList texts;
    for (const QWidget *control : controls)
        texts.append(control->property(textProperty(control)).toString());
    const QStringList given = Mnemonics::distribute(texts, taken);
    for (int i = 0; i < controls.size(); ++i) {
        if (given.at(i) != texts.at(i))
            controls.at(i)->setProperty(textProperty(controls.at(i)), given.at(i));
    }
}

void giveTabs(const QWidget *dialog, QSet<QChar> &taken)
{
    for (auto *bar : dialog->findChildren<QTabBar *>()) {
        QStringList texts;
        for (int i = 0; i < bar->count(); ++i)
            texts.append(bar->tabText(i));
        const QStringList given = Mnemonics::distribute(texts, taken);
        for (int i = 0; i < bar->count(); ++i) {
            if (given.at(i) != texts.at(i))
                bar->setTabText(i, given.at(i));
        }
    }
}

} // namespace

Mnemonics::Mnemonics(QObject *application) : QObject(application)
{
    application->installEventFilter(this);
}

bool Mnemonics::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType() &&
        isDialog(*static_cast<QWidget *>(watched)))
        give(static_cast<QWidget *>(watched));
    return QObject::eventFilter(watched, event);
}

QStringList Mnemonics::distribute(const QStringList &texts, QSet<QChar> &taken)
{
    QStringList given = texts;
    QVector<int> without;
    for (int i = 0; i < given.size(); ++i) {
        const QChar letter = letterOf(given.at(i));
        if (!letter.isNull() && !taken.contains(letter)) {
            taken.insert(letter);
            continue;
        }
        if (!letter.isNull())
            given[i] = withoutMark(given.at(i));
        without.append(i);
    }
    for (const int i : qAsConst(without)) {
        const int place = placeIn(given.at(i), taken);
        if (place < 0)
            continue;
        taken.insert(given.at(i).at(place).toUpper());
        given[i].insert(place, mark);
    }
    return given;
}

void Mnemonics::give(QWidget *dialog)
{
    makeBuddies(dialog);
    QMap<const QWidget *, QWidgetList> pages;
    for (QWidget *control : dialog->findChildren<QWidget *>()) {
        if (control->window() == dialog && hasLetter(control))
            pages[pageOf(control, dialog)].append(control);
    }
    QSet<QChar> taken;
    giveAll(pages.take(nullptr), taken);
    giveTabs(dialog, taken);
    for (const QWidgetList &controls : qAsConst(pages)) {
        QSet<QChar> ofPage = taken;
        giveAll(controls, ofPage);
    }
}
