#pragma once

#include "ui/tagging/nameschoice.h"

#include <QFrame>
#include <QPointer>

#include <functional>

class CompletionList;
class CompletionModel;
class QLabel;
class QToolButton;
class SpecialLineEdit;
class TagsController;

/**
 * One line in which tags are named by a few keys: what is typed is completed from any part of a name, a comma
 * or Tab takes the offered name, Backspace takes the last one back, Return does what the line is for. Names
 * that no tag has are marked as new before. It stays, with all that was typed, when that fails. Its owner
 * gives it a place and is asked to do the work. GUI thread.
 */
class NamesLine : public QFrame
{
    Q_OBJECT

public:
    /** False when it could not be done, of which the user knows. */
    using Taker = std::function<bool(const ChosenTags &)>;

    NamesLine(const QString &title, const Taker &take, QWidget *parent = nullptr);
    ~NamesLine() override;

    /** Borrowed; null closes the line. */
    void setController(TagsController *tags);
    void setTitle(const QString &title);
    /** Offers to stay open after Return, by a pin. */
    void offerPin(const QString &text, const QString &toolTip);
    bool isPinned() const;

    void open();
    /** The focus goes back to where it was. */
    void closeLine();

signals:
    /** Return without any name, while the pin is pressed. */
    void skipped();
    /** Behind the line the focus is where it was before. */
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildForm();
    void readNames();
    void complete();
    void edited(const QString &text);
    /** Takes the current row of the list when it was offered for this text, or the text. */
    void take(const QString &text);
    void takeOffered();
    void takeBack();
    bool handleKey(int key, Qt::KeyboardModifiers modifiers);
    void commit();
    void showChoice();

    const Taker m_take;
    QLabel *m_title;
    TakenNames *m_taken;
    SpecialLineEdit *m_edit;
    QToolButton *m_pin;
    QToolButton *m_close;
    CompletionModel *m_model;
    QPointer<CompletionList> m_list; // belongs to the window
    QPointer<TagsController> m_tags;
    QPointer<QWidget> m_focusBefore;
    NamesChoice m_choice;
    QString m_completed; ///< the text that the list is for
    bool m_areNamesOld = true;
    bool m_isTaking = false;
};
