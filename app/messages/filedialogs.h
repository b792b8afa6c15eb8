#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/** The one door to the toolkit's file dialogs, so that a test can answer them. GUI thread. */
namespace FileDialogs {
struct Request
{
    enum Kind { OpenFile, OpenFiles, SaveFile, Directory };
    Kind kind = OpenFile;
    QString caption;
    QString directory;
    QString filter;
};

/** An empty text or list means that the dialog was cancelled. */
QString openFile(QWidget *parent, const QString &caption, const QString &directory, const QString &filter);
QStringList openFiles(QWidget *parent, const QString &caption, const QString &directory,
                      const QString &filter = QString());
/** A name without an ending gets the suffix, which is told without its point, before it is looked for. */
QString saveFile(QWidget *parent, const QString &caption, const QString &directory, const QString &filter,
                 const QString &suffix = QString());
QString existingDirectory(QWidget *parent, const QString &caption, const QString &directory);

/** Lets a function answer all dialogs from now on; an empty one gives them back to the screen. */
void setResponder(const std::function<QStringList(const Request &)> &responder);
} // namespace FileDialogs
