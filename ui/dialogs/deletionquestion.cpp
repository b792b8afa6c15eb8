#include "ui/dialogs/deletionquestion.h"

#include "app/messages/messages.h"

bool confirmDeletion(QWidget *parent, const QString &question)
{
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.text = question;
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    // The previewers, from which files are deleted too, may stay on top.
    box.extraFlags = Qt::WindowStaysOnTopHint;
    return Messages::run(parent, box).button == QMessageBox::Ok;
}
