#pragma once

#include "tests/support/text.h"

#include <QAction>
#include <QApplication>
#include <QInputDialog>

/**
 * Answers the text dialogs that come up, one after the other, in place of a person. A null text presses
 * Cancel, as does every dialog that there is no answer for.
 */
class DialogAnswers
{
public:
    explicit DialogAnswers(const QStringList &answers) : m_answers(answers)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { answer(); });
        m_timer.start(5);
    }

    /** Titles and labels of the dialogs so far. */
    const QStringList &seen() const { return m_seen; }

private:
    void answer()
    {
        auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        m_seen.append(dialog->windowTitle() + QLatin1Char('|') + dialog->labelText());
        const QString text = m_answers.isEmpty() ? QString() : m_answers.takeFirst();
        dialog->setTextValue(text);
        text.isNull() ? dialog->reject() : dialog->accept();
    }

    QStringList m_answers;
    QStringList m_seen;
    QTimer m_timer;
};

/** The command with a text, null when there is none. */
inline QAction *findAction(const QObject *owner, const QString &text)
{
    const QList<QAction *> actions = owner->findChildren<QAction *>();
    const auto found = std::find_if(actions.cbegin(), actions.cend(),
                                    [&text](const QAction *action) { return action->text() == text; });
    return found == actions.cend() ? nullptr : *found;
}

/** The entries of the menu that a call opens; it is closed again. */
template <class Open>
QStringList menuTexts(Open open)
{
    QStringList texts;
    QTimer::singleShot(0, qApp, [&texts] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            for (const QAction *entry : menu->actions())
                texts.append(entry->text());
            menu->close();
        }
    });
    open();
    return texts;
}
