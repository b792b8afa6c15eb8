#pragma once

#include "core/prompts/userprompts.h"

/** Tells and asks by message boxes over the active window. Belongs to the window. */
class BoxPrompts : public UserPrompts
{
public:
    void tell(Kind kind, const QString &title, const QString &text) override;
    bool confirm(const Inquiry &inquiry) override;
    int choose(const Inquiry &inquiry, const QStringList &choices) override;
};
