#include "ui/dialogs/modificationnotice.h"

#include "ui/dialogs/filemodificationdialog.h"

#include <QAbstractItemView>
#include <QApplication>

namespace {
constexpr int retryMilliseconds = 250;

/** A name that is being changed in its place would be stored as far as it goes. */
bool isEditorOpen()
{
    const QWidget *focus = QApplication::focusWidget();
    for (const QWidget *above = focus ? focus->parentWidget() : nullptr; above;
         above = above->parentWidget()) {
        const auto *view = qobject_cast<const QAbstractItemView *>(above->parentWidget());
        if (view && view->viewport() == above)
            return true;
    }
    return false;
}

bool isHandBusy()
{
    return isEditorOpen() || QApplication::activeModalWidget() || QApplication::activePopupWidget() ||
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
    m_dialog = new FileModificationDialog(m_window);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    // Nobody has asked for it: what is being typed goes on to where it was meant to go.
    m_dialog->setAttribute(Qt::WA_ShowWithoutActivating);
    m_dialog->add(m_updatedPaths, m_deletedFiles);
    m_updatedPaths.clear();
    m_deletedFiles.clear();
    m_dialog->show();
}
