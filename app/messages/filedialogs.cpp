#include "app/messages/filedialogs.h"

#include <QFileDialog>

namespace {

std::function<QStringList(const FileDialogs::Request &)> &responder()
{
    static std::function<QStringList(const FileDialogs::Request &)> function;
    return function;
}

} // namespace

namespace FileDialogs {

QString openFile(QWidget *parent, const QString &caption, const QString &directory, const QString &filter)
{
    if (responder())
        return responder()({Request::OpenFile, caption, directory, filter}).value(0);
    return QFileDialog::getOpenFileName(parent, caption, directory, filter);
}

QStringList openFiles(QWidget *parent, const QString &caption, const QString &directory,
                      const QString &filter)
{
    if (responder())
        return responder()({Request::OpenFiles, caption, directory, filter});
    return QFileDialog::getOpenFileNames(parent, caption, directory, filter);
}

QString saveFile(QWidget *parent, const QString &caption, const QString &directory, const QString &filter,
                 const QString &suffix)
{
    if (responder())
        return responder()({Request::SaveFile, caption, directory, filter}).value(0);
    QFileDialog dialog(parent, caption, directory, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(suffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString existingDirectory(QWidget *parent, const QString &caption, const QString &directory)
{
    if (responder())
        return responder()({Request::Directory, caption, directory, {}}).value(0);
    return QFileDialog::getExistingDirectory(parent, caption, directory, QFileDialog::ShowDirsOnly);
}

void setResponder(const std::function<QStringList(const Request &)> &function)
{
    responder() = function;
}

} // namespace FileDialogs
