#pragma once

#include <functional>

class QString;
class QUrl;
class QWidget;

/**
 * Hands files and links over to the programs of the desktop. Failures are told in boxes, and so is a disk
 * that does not answer, for which the window does not wait. GUI thread.
 */
namespace FileOpening {
/**
 * What a link stands for; empty when it must not be opened. Web, FTP and mail addresses may be, also without
 * their scheme, and paths of this computer unless they would start a program.
 */
QUrl linkTarget(const QString &text);

void openHyperlink(QWidget *parent, const QString &text);
/** Acts when there is something at the path, and tells the user when there is nothing. */
void whenThere(QWidget *parent, const QString &path, const std::function<void()> &act);
/** Nothing that is no file or folder, or would start a program. */
void openExternalFile(QWidget *parent, const QString &path);
/**
 * Whether a file out of the database may be handed to the desktop in a temporary copy. One that would start a
 * program, which others may have put into the database, is refused in a box: who trusts it can extract it.
 */
bool mayOpenCopy(QWidget *parent, const QString &name);
/** Shows the file in the system's file manager, or opens its folder where none can be asked. */
void showInFileManager(QWidget *parent, const QString &path);
} // namespace FileOpening
