#pragma once

#include <QString>

class QWidget;

/** The small dialogs that ask for one name; modal use. */
namespace NameInput {
/** False when the user cancels or gives nothing but blanks, which counts as the same. */
bool ask(QWidget *parent, const QString &title, const QString &label, QString &name);
/** Asks for the name of a new tag group, out of which double quotes are taken. */
bool askForGroup(QWidget *parent, QString &name);
} // namespace NameInput
