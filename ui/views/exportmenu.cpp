#include "ui/views/exportmenu.h"

#include "app/settings/constants.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "fileops/worker/exportrequest.h"
#include "ui/dialogs/exportcommand.h"
#include "ui/widgets/mainui.h"

#include <QEvent>
#include <QMenu>

ExportMenu::ExportMenu(std::function<ExportSelection()> selection, QWidget *view)
    : QObject(view),
      m_selection(std::move(selection)),
      m_view(view),
      m_menu(std::make_unique<QMenu>(tr("Export")))
{
    add(ExportRequest::Database, tr("Database"), "exportDatabaseAction");
    add(ExportRequest::Shell, tr("Shell"), "exportShellAction");
    add(ExportRequest::Csv, tr("CSV File"), "exportCsvAction");
    updateAvailability(false);
}

ExportMenu::~ExportMenu() = default;

void ExportMenu::add(int form, const QString &text, const char *objectName)
{
    auto *entry = new QAction(text, this);
    entry->setObjectName(QLatin1String(objectName));
    connect(entry, &QAction::triggered, this, [this, form] {
        if (isLocal())
            ExportCommand(m_controller, m_view->window()).exportSelection(form, m_selection());
    });
    m_menu->addAction(entry);
    m_entries.append(entry);
}

void ExportMenu::setController(MainViewController *controller)
{
    m_controller = controller;
}

void ExportMenu::takePlace(MainUi &ui)
{
    m_windowMenu = ui.exportMenu;
}

void ExportMenu::watch(QWidget *view)
{
    view->installEventFilter(this);
}

void ExportMenu::putFirst(QAction *entry)
{
    m_menu->insertAction(m_entries.constFirst(), entry);
}

bool ExportMenu::isLocal() const
{
    return m_controller && m_controller->collection()->dbType() == Constants::localDatabase;
}

void ExportMenu::updateAvailability(bool hasSelection)
{
    for (QAction *entry : qAsConst(m_entries))
        entry->setEnabled(hasSelection && isLocal());
    m_menu->menuAction()->setEnabled(isLocal());
}

void ExportMenu::bringEntries()
{
    if (!m_windowMenu)
        return;
    m_windowMenu->clear();
    m_windowMenu->addActions(m_entries);
}

bool ExportMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        bringEntries();
    return QObject::eventFilter(watched, event);
}
