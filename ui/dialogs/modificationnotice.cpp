#include "ui/dialogs/modificationnotice.h"

#include "ui/dialogs/filemodificationdialog.h"

#include <QApplication>

namespace {
constexpr int retryMilliseconds = 250;

bool isHandBusy()
{
    return QApplication::activeModalWidget() || QApplication::activePopupWidget() ||
           QApplication::mouseButtons() != Qt::NoButton;
}
} // namespace

ModificationNotice::ModificationNotice(QWidget *window) : QObject(window), m_window(window)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ModificationNotice::showDialog);
}

void ModificationNotice::tell(const QStringList &updatedPaths, const DeletedFileRepresentations &deletedFiles)
{
    if (m_dialog) {
        m_dialog->add(updatedPaths, deletedFiles);
        return;
    }
    m_updatedPaths += updatedPaths;
    m_deletedFiles += deletedFiles;
    if (!m_timer.isActive())
        m_timer.start(0);
}

void ModificationNotice::forget()
{
    m_timer.stop();
    m_updatedPaths.clear();
    m_deletedFiles.clear();
    if (m_dialog)
        m_dialog->reject();
}

void ModificationNotice::showDialog()
{
    if (isHandBusy()) {
        m_timer.start(retryMilliseconds);
        return;
    }
    FileModificationDialog dialog(m_window);
    dialog.add(m_updatedPaths, m_deletedFiles);
    m_updatedPaths.clear();
    m_deletedFiles.clear();
    m_dialog = &dialog;
    dialog.exec();
}
