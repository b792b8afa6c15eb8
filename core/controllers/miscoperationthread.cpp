#include "core/controllers/miscoperationthread.h"

#include "core/prompts/userprompts.h"

#include <QCoreApplication>
#include <QDebug>

namespace {

/** Where the texts of this file are looked up. */
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(MiscOperationThread)
};

QString question(const QString &folder, const QString &name, const QString &newName, int kind)
{
    if (kind == MiscOperationThread::RenameQuestion)
        return Texts::tr(
                   "There is already a file named %1 in folder %2. Do you instead want to rename the file to "
                   "%3?")
            .arg(name, folder, newName);
    return Texts::tr(
               "There is a different file already in the folder %1 with the same name as file '%2'. Do you "
               "want to replace it or create a new file named '%3'?")
        .arg(folder, name, newName);
}

} // namespace

int MiscOperationThread::askUserIfUserNewName(const QString &folder, const QString &name,
                                              const QString &newName, int kind, UserPrompts &prompts)
{
    if (kind < 0) {
        qDebug("MiscOperationThread::askUserIfUserNewName() - invalid operation type");
        return CancelChoice;
    }
    const UserPrompts::Inquiry inquiry{UserPrompts::Question, Texts::tr("File Extraction"),
                                       question(folder, name, newName, kind), QString()};
    switch (prompts.choose(inquiry, {Texts::tr("Use New Name"), Texts::tr("Replace")})) {
    case 0:
        return UseNewNameChoice;
    case 1:
        return ReplaceChoice;
    // A closed box has chosen nothing.
    default:
        return CancelChoice;
    }
}
