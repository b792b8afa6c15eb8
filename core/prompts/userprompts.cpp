#include "core/prompts/userprompts.h"

#include <QDebug>

UserPrompts &UserPrompts::nobody()
{
    // Shared by all who have nobody to ask, tests among them: no call below the window needs a null check.
    static UserPrompts prompts;
    return prompts;
}

void UserPrompts::tell(Kind kind, const QString &title, const QString &text)
{
    Q_UNUSED(kind)
    qDebug() << "Nobody was told:" << title << text;
}

bool UserPrompts::confirm(const Inquiry &inquiry)
{
    qDebug() << "Nobody was asked:" << inquiry.title << inquiry.text;
    // Nobody has agreed.
    return false;
}

int UserPrompts::choose(const Inquiry &inquiry, const QStringList &choices)
{
    Q_UNUSED(choices)
    qDebug() << "Nobody was asked:" << inquiry.title << inquiry.text;
    // No choice is made for somebody.
    return -1;
}
