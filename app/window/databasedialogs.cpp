#include "app/window/databasedialogs.h"

#include "app/messages/messages.h"
#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "fileops/worker/presentableduplicates.h"
#include "ui/dialogs/browsingtreedialog.h"
#include "ui/dialogs/duplicateprompt.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/dialogs/taggroupingdialog.h"

#include <QPointer>

void DatabaseDialogs::tellVersion(const Collection *collection) const
{
    if (!collection)
        return;
    Messages::information(
        m_window, tr("Database Info"),
        tr("Version of Vorna used to create the currently open database: %1\nDatabase permissions: %2")
            .arg(collection->dbVersion(), collection->isReadOnly() ? tr("read-only") : tr("writable")));
}

void DatabaseDialogs::editTagGroups(Collection *collection) const
{
    const QPointer<GroupsController> groups = collection ? collection->groupsController() : nullptr;
    if (!groups || groups->isReadOnly())
        return;
    TagGroupingDialog(groups, m_window).exec();
    if (groups) {
        groups->load();
        groups->refresh();
    }
}

bool DatabaseDialogs::chooseBrowsingTree(Collection *collection) const
{
    BrowsTreeController *trees = collection ? collection->browsTreeController() : nullptr;
    if (!trees || collection->dbType() != Constants::serverDatabase)
        return false;
    BrowsingTreeDialog dialog(trees, m_window);
    QObject::connect(&dialog, &BrowsingTreeDialog::showError, m_messager, &PopupMessager::showWarning);
    QObject::connect(&dialog, &BrowsingTreeDialog::treeDuplicated, m_messager,
                     &PopupMessager::showBrowsingTreeDuplicated);
    dialog.exec();
    return true;
}

void DatabaseDialogs::promptAboutDuplicates(const PresentableDuplicates &duplicates,
                                            Collection *collection) const
{
    PresentableDuplicates shown = duplicates;
    if (!AddingSettings::listDuplicates()) {
        // Only the report may be silenced: files of equal names were left out and wait for an answer.
        shown.contentMatches.clear();
        shown.externalDuplicateGroups.clear();
    }
    if (collection && !shown.isEmpty())
        DuplicatePrompt(shown, collection->mainViewController(), m_window).exec();
}
