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
    /** Lists files of a shell that are not in the database, if there are any. The window of its own goes with
     * its closing. */
    void showNotImported(const QList<ShellFile> &files);

private:
    QWidget *m_window;
};
