#include "ui/dialogs/deletionquestion.h"

#include "app/messages/messages.h"

#include <QCoreApplication>

bool confirmDeletion(QWidget *parent, const QString &noun)
{
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.text = QCoreApplication::translate("FileCommands", "Do you really want to delete the selected %1?")
                   .arg(noun);
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    box.extraFlags = Qt::WindowStaysOnTopHint;
    return Messages::run(parent, box).button == QMessageBox::Ok;
}
