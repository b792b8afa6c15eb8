#include "app/messages/boxprompts.h"

#include "app/messages/messages.h"

namespace {

QMessageBox::Icon iconOf(UserPrompts::Kind kind)
{
    switch (kind) {
    case UserPrompts::Information:
        return QMessageBox::Information;
    case UserPrompts::Question:
        return QMessageBox::Question;
    case UserPrompts::Warning:
        return QMessageBox::Warning;
    case UserPrompts::Critical:
        return QMessageBox::Critical;
    default:
        return QMessageBox::NoIcon;
    }
}

Messages::Box boxOf(const UserPrompts::Inquiry &inquiry)
{
    Messages::Box box;
    box.icon = iconOf(inquiry.kind);
    box.title = inquiry.title;
    box.text = inquiry.text;
    box.informativeText = inquiry.details;
    box.defaultButton = QMessageBox::Cancel;
    return box;
}

} // namespace

void BoxPrompts::tell(Kind kind, const QString &title, const QString &text)
{
    Messages::Box box;
    box.icon = iconOf(kind);
    box.title = title;
    box.text = text;
    Messages::run(nullptr, box);
}

bool BoxPrompts::confirm(const Inquiry &inquiry)
{
    Messages::Box box = boxOf(inquiry);
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    return Messages::run(nullptr, box).button == QMessageBox::Ok;
}

int BoxPrompts::choose(const Inquiry &inquiry, const QStringList &choices)
{
    Messages::Box box = boxOf(inquiry);
    box.actions = choices;
    box.buttons = QMessageBox::Cancel;
    return Messages::run(nullptr, box).action;
}
