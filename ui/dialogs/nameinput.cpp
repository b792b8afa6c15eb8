#include "ui/dialogs/nameinput.h"

#include <QCoreApplication>
#include <QInputDialog>

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("NameInput", text);
}
} // namespace

namespace NameInput {

bool ask(QWidget *parent, const QString &title, const QString &label, QString &name)
{
    bool isGiven = false;
    name = QInputDialog::getText(parent, title, label, QLineEdit::Normal, QString(), &isGiven);
    return isGiven && !name.simplified().isEmpty();
}

bool askForGroup(QWidget *parent, QString &name)
{
    if (!ask(parent, tr("Group name"), tr("Name of new group:"), name))
        return false;
    name.remove(QLatin1Char('"'));
    return !name.simplified().isEmpty();
}

} // namespace NameInput
