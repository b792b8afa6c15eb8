#include "app/messages/messages.h"

#include "app/settings/showntext.h"

#include <QApplication>
#include <QPushButton>
#include <QTextDocument>

namespace {

std::function<Messages::Answer(const Messages::Box &)> &responder()
{
    static std::function<Messages::Answer(const Messages::Box &)> function;
    return function;
}

void show(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    Messages::Box box;
    box.icon = icon;
    box.title = title;
    box.text = text;
    Messages::run(parent, box);
}

QString shownText(const QString &text)
{
    return ShownText::breakable(ShownText::cutLines(text));
}

} // namespace

namespace Messages {

Answer run(QWidget *parent, const Box &box)
{
    if (responder())
        return responder()(box);

    // Below a modal dialog nobody would see a box.
    QWidget *modal = QApplication::activeModalWidget();
    // A name from a database must neither widen the box beyond the screen nor turn into markup.
    QMessageBox message(box.icon, ShownText::cut(box.title), shownText(box.text), box.buttons,
                        modal ? modal : parent);
    message.setTextFormat(Qt::PlainText);
    const QString more = shownText(box.informativeText);
    message.setInformativeText(Qt::mightBeRichText(more) ? Qt::convertFromPlainText(more) : more);
    message.setDetailedText(box.detailedText);
    message.setWindowFlags(message.windowFlags() | box.extraFlags);
    if (box.defaultButton != QMessageBox::NoButton)
        message.setDefaultButton(box.defaultButton);
    QList<QAbstractButton *> actionButtons;
    for (const QString &action : box.actions)
        actionButtons.append(message.addButton(action, QMessageBox::ActionRole));
    message.activateWindow();
    // A box is to be answered, also in the middle of work under a wait cursor.
    const bool isWaiting = QGuiApplication::overrideCursor();
    if (isWaiting)
        QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    message.exec();
    if (isWaiting)
        QGuiApplication::restoreOverrideCursor();

    Answer answer;
    answer.action = actionButtons.indexOf(message.clickedButton());
    if (answer.action < 0)
        answer.button = message.standardButton(message.clickedButton());
    return answer;
}

void information(QWidget *parent, const QString &title, const QString &text)
{
    show(parent, QMessageBox::Information, title, text);
}

void warning(QWidget *parent, const QString &title, const QString &text)
{
    show(parent, QMessageBox::Warning, title, text);
}

void critical(QWidget *parent, const QString &title, const QString &text)
{
    show(parent, QMessageBox::Critical, title, text);
}

void setResponder(const std::function<Answer(const Box &)> &function)
{
    responder() = function;
}

} // namespace Messages
