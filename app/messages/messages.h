#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>

#include <functional>

/**
 * The one door through which message boxes are shown. A box is described first and then run, so that a test
 * can take it instead of a person: see setResponder. GUI thread.
 */
namespace Messages {
struct Box
{
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString title;
    QString text;
    QString informativeText;
    QString detailedText;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    /** Texts of further buttons of the action role; a run box answers their index in chosenAction. */
    QStringList actions;
    Qt::WindowFlags extraFlags;
};

struct Answer
{
    QMessageBox::StandardButton button = QMessageBox::NoButton;
    /** The index of the chosen action text, -1 for none. */
    int action = -1;
};

/** Shows the box modally and waits for its answer. */
Answer run(QWidget *parent, const Box &box);

void information(QWidget *parent, const QString &title, const QString &text);
void warning(QWidget *parent, const QString &title, const QString &text);
void critical(QWidget *parent, const QString &title, const QString &text);

/** Lets a function answer all boxes from now on; an empty one gives them back to the screen. */
void setResponder(const std::function<Answer(const Box &)> &responder);
} // namespace Messages
