#pragma once

#include "fileops/worker/deletedfilerepresentations.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

class FileModificationDialog;
class QWidget;

/**
 * Brings up the window that tells of changed files once the user's hand is free: no menu or other dialog is
 * open, no name is being changed in its place and no button is held down. It does not take the keys. What
 * comes meanwhile or while it shows goes into the same window.
 */
class ModificationNotice : public QObject
{
    Q_OBJECT

public:
    explicit ModificationNotice(QWidget *window);

    void tell(const QStringList &updatedPaths, const DeletedFileRepresentations &deletedFiles);
    /** The database of these files is closed. */
    void forget();

private:
    void showDialog();

    QWidget *m_window;
    QTimer m_timer;
    QPointer<FileModificationDialog> m_dialog;
    QStringList m_updatedPaths;
    DeletedFileRepresentations m_deletedFiles;
};
