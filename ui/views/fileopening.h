#pragma once

class QString;
class QUrl;
class QWidget;

/** Hands files and links over to the programs of the desktop. Failures are told in boxes. GUI thread. */
namespace FileOpening {
/**
 * What a link stands for; empty when it must not be opened. Web, FTP and mail addresses may be, also without
 * their scheme, and paths of this computer unless they would start a program.
 */
QUrl linkTarget(const QString &text);

void openHyperlink(QWidget *parent, const QString &text);
/** True, after telling the user so, when there is nothing at the path. */
bool warnWhenGone(QWidget *parent, const QString &path);
void openExternalFile(QWidget *parent, const QString &path);
/** Whether a file on the disk may be handed to the desktop; one that would start a program is refused in a
 * box. */
bool mayOpenFile(QWidget *parent, const QString &path);
/**
 * Whether a file out of the database may be handed to the desktop in a temporary copy. One that would start a
 * program, which others may have put into the database, is refused in a box: who trusts it can extract it.
 */
bool mayOpenCopy(QWidget *parent, const QString &name);
/** Shows the file in the system's file manager, or opens its folder where none can be asked. */
void showInFileManager(QWidget *parent, const QString &path);
} // namespace FileOpening
