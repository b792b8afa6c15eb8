#pragma once

#include <QString>
#include <QStringList>

/**
 * What stands below the windows tells and asks the user by this, without knowing how it is shown. The window
 * hands its own down to what it opens, and outlives it. This one has nobody to ask: it notes in the log what
 * it is told, and gives the answer that changes nothing. GUI thread; an event loop may run during each call.
 */
class UserPrompts
{
public:
    enum Kind { Plain, Information, Question, Warning, Critical };
    struct Inquiry
    {
        Kind kind;
        QString title;
        QString text;
        QString details; ///< shown smaller, below the text
    };

    UserPrompts() = default;
    virtual ~UserPrompts() = default;
    UserPrompts(const UserPrompts &) = delete;
    UserPrompts &operator=(const UserPrompts &) = delete;

    /** For whoever was handed no other. */
    static UserPrompts &nobody();

    virtual void tell(Kind kind, const QString &title, const QString &text);
    /** Whether the user agrees; to do so takes more than a press of Enter. */
    virtual bool confirm(const Inquiry &inquiry);
    /** The index of the chosen one, -1 for none of them. */
    virtual int choose(const Inquiry &inquiry, const QStringList &choices);
};
