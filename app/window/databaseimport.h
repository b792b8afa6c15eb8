#pragma once

#include "fileops/files/shellfile.h"

#include <QList>
#include <QObject>

class Collection;
class QWidget;

/**
 * Asks what to import and has it imported: another local database, or a shell, which has metadata alone.
 * Owned by the window, above which its dialogs stand.
 */
class DatabaseImport : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseImport(QWidget *window);

    /** Into the collection; nothing without one, or when a dialog is cancelled. */
    void run(Collection *collection, bool isShell);
    /** The shell at this path; says so when there is no collection that takes it. */
    void runShell(Collection *collection, const QString &path);
    /** Lists files of a shell that are not in the database, if there are any. The window of its own goes with
     * its closing. */
    void showNotImported(const QList<ShellFile> &files);

private:
    void choose(Collection *collection, const QString &path, bool isShell);

    QWidget *m_window;
};
