#pragma once

#include <QString>

#include <functional>

class QWidget;

/** The small dialogs that ask for one name; modal use. */
namespace NameInput {
/** Does what the name is for; false leaves the dialog open with the name. */
using Taker = std::function<bool(const QString &name)>;

/** False when the user cancels or gives nothing but blanks, which counts as the same. */
bool ask(QWidget *parent, const QString &title, const QString &label, const Taker &take);
/** Asks for the name of a new tag group, out of which double quotes are taken. */
bool askForGroup(QWidget *parent, const Taker &take);
} // namespace NameInput
