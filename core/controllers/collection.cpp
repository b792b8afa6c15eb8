#include "core/controllers/collection.h"

#include "app/settings/constants.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/favouritetags.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/postgrescollection.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/sqlitecollection.h"
#include "core/controllers/tagscontroller.h"
#include "core/prompts/userprompts.h"
#include "core/undo/undohistory.h"
#include "db/manager/databasemanger.h"
#include "db/sql/connections.h"
#include "db/sql/postgresqueryconstructor.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "models/counts/nodecounts.h"
#include "models/counts/tagcounts.h"
#include "models/trees/brtreesortermodel.h"

#include <QTimer>

Collection::Collection(const QString &driver, const QString &host, const QString &databaseName,
                       const QString &user, const QString &password, int port, QObject *parent)
    : QObject(parent),
      m_driver(driver),
      m_databaseName(databaseName),
      m_port(port),
      m_hostName(host),
      m_userName(user),
      m_password(password),
      m_settings(new CollectionSettings(this)),
      m_prompts(&UserPrompts::nobody())
{
}

Collection::~Collection()
{
    // Named, as a virtual call would not reach a derived class any more.
    Collection::close();
    // It holds functions that look into the controllers.
    delete m_history;
    // Controllers and their models borrow the records, so they go before the manager.
    delete m_mainViewController;
    delete m_browsTreeController;
    delete m_tagsController;
    delete m_groupsController;
    delete m_relationsController;
    delete m_manager;
}

void Collection::build()
{
    // In this order: each step borrows what the one before has made. The base constructor cannot do it, as
    // the manager's kind is up to the derived class.
    m_manager = makeManager();
    connectManager();
    m_queryConstructor = makeQueryConstructor();
    makeControllers();
    introducePeers();
    makeHistory();
}

void Collection::makeHistory()
{
    m_history = new UndoHistory(
        m_manager, [this] { return m_tagsController->mayEdit(); }, this);
    const QString order = QStringLiteral("node order");
    // What no table holds is kept beside a step: its value before and after, put back together with the rows.
    BrowsTreeController *nodes = m_browsTreeController;
    m_history->keptState().add(order, {{UndoTable::Nodes, UndoTable::NodeLinks},
                                       [nodes] { return nodes->manualOrder(); },
                                       [nodes](const QVariant &value) { nodes->setManualOrder(value); }});
    connect(nodes->sorterModel(), &BrTreeSorterModel::orderChanged, m_history,
            [this, order] { m_history->keptChanged(order, tr("Move the node"), tr("The node moved")); });
    FavouriteTags *favourites = m_tagsController->favourites();
    m_history->keptState().add(QStringLiteral("favourites"),
                               {{UndoTable::Tags},
                                [favourites] { return favourites->state(); },
                                [favourites](const QVariant &value) { favourites->setState(value); }});
    GroupsController *groups = m_groupsController;
    m_history->keptState().add(
        QStringLiteral("tabs"),
        {{UndoTable::Groups},
         [groups] { return QVariant::fromValue(groups->tabOrder()); },
         [groups](const QVariant &value) { groups->bringTabsBack(value.value<QList<int>>()); }});
    connect(m_history, &UndoHistory::happened, this, &Collection::happened);
    connect(m_history, &UndoHistory::fellShort, this, &Collection::showTempWarning);
}

void Collection::connectManager()
{
    connect(m_manager, &DatabaseManger::duplicatesReady, this, &Collection::duplicatesReady);
    connect(m_manager, &DatabaseManger::showTempWarning, this, &Collection::showTempWarning);
    connect(m_manager, &DatabaseManger::error, this, &Collection::showError);
    connect(m_manager, &DatabaseManger::showInformation, this, &Collection::showInformation);
    connect(m_manager, &DatabaseManger::importNotification, this, &Collection::importNotification);
    connect(m_manager, &DatabaseManger::connectionError, this, &Collection::connectionError);
    connect(m_manager, &DatabaseManger::errorOccured, this, &Collection::errorOccured);
    connect(m_manager, &DatabaseManger::operationFailed, this, &Collection::operationFailed);
    connect(m_manager, &DatabaseManger::aboutToMergeForeignChanges, this,
            &Collection::aboutToMergeForeignChanges);
    connect(m_manager, &DatabaseManger::foreignChangesShown, this, &Collection::foreignChangesShown);
    connect(m_manager, &DatabaseManger::foreignChangesMerged, this, &Collection::foreignChangesMerged);
    connect(m_manager, &DatabaseManger::aboutToReloadAllData, this, &Collection::aboutToReloadAllData);
    connect(m_manager, &DatabaseManger::allDataReloaded, this, &Collection::allDataReloaded);
    connect(m_manager, &DatabaseManger::loadingProgress, this, &Collection::loadingProgress);
    connect(m_manager, &DatabaseManger::nodesMade, this, &Collection::nodesMade);
    connect(m_manager, &DatabaseManger::filesRead, this, &Collection::filesRead);
}

std::unique_ptr<AbstractQueryConstructor> Collection::makeQueryConstructor() const
{
    if (m_driver == Constants::postgresDriver)
        return std::make_unique<PostgresQueryConstructor>();
    return std::make_unique<SqliteQueryConstructor>();
}

void Collection::makeControllers()
{
    const AbstractQueryConstructor *constructor = m_queryConstructor.get();
    m_tagsController = new TagsController(m_manager, constructor, this);
    m_groupsController = new GroupsController(m_manager, constructor, this);
    m_browsTreeController = new BrowsTreeController(m_manager, constructor, this);
    m_mainViewController = new MainViewController(m_manager, constructor, this);
    m_relationsController = new RelationsController(m_manager, constructor, this);
}

void Collection::introducePeers()
{
    // Controllers know each other only after all of them are there.
    m_tagsController->setPeers(m_browsTreeController, m_groupsController, m_mainViewController,
                               m_relationsController);
    m_browsTreeController->setPeers(m_mainViewController, m_tagsController, m_relationsController);
    m_mainViewController->setPeers(m_tagsController, m_browsTreeController, m_relationsController);
}

void Collection::setPrompts(UserPrompts &prompts)
{
    m_prompts = &prompts;
    if (m_manager)
        m_manager->setPrompts(prompts);
}

QSqlError Collection::open()
{
    if (!m_manager)
        return {QStringLiteral("DatabaseManger is null"), QString(), QSqlError::NoError};
    return m_manager->openDB();
}

void Collection::close()
{
    if (m_manager)
        m_manager->closeDB();
}

bool Collection::createDatabase()
{
    return m_manager && m_manager->createDatabase();
}

int Collection::dbType() const
{
    return m_manager ? m_manager->dbType() : 0;
}

void Collection::countFiles(bool on)
{
    m_tagsController->counts()->setOn(on);
    m_browsTreeController->counts()->setOn(on);
}

void Collection::readSettings()
{
    if (m_manager)
        m_manager->readSettings();
    if (m_mainViewController)
        m_mainViewController->readSettings();
    if (m_browsTreeController)
        m_browsTreeController->reloadSorting();
}

Collection::Loading Collection::load()
{
    const Loading begun = beginLoad();
    return begun == Loaded ? finishLoad() : begun;
}

Collection::Loading Collection::beginLoad()
{
    // The state of one moment is read from here to endLoad(), whatever others write meanwhile.
    if (m_manager && !m_manager->beginLoad())
        return m_manager->wasBusy() ? Locked : Unreadable;
    if (m_manager)
        m_manager->beginFiles();
    return Loaded;
}

bool Collection::areFilesMany() const
{
    return m_manager && m_manager->areFilesMany();
}

Collection::Loading Collection::finishLoad()
{
    const QList<AbstractController *> controllers = {m_mainViewController, m_browsTreeController,
                                                     m_tagsController, m_groupsController,
                                                     m_relationsController};
    for (AbstractController *controller : controllers) {
        if (controller)
            controller->load();
    }
    if (!m_manager || m_manager->endLoad()) {
        // Once the window shows what was read.
        if (m_manager)
            QTimer::singleShot(0, m_manager, [this] { m_manager->runAllAutoLinks(false); });
        return Loaded;
    }
    return m_manager->wasBusy() ? Locked : Unreadable;
}

bool Collection::isReadOnly() const
{
    return m_manager && m_manager->isReadOnly();
}

QString Collection::dbVersion() const
{
    return m_manager ? m_manager->dbVersion() : QString();
}

DBDetails Collection::details() const
{
    return {Connections::typeOf(m_driver), m_hostName, m_port, m_databaseName, m_userName, m_password};
}

bool Collection::canOpen(const DBDetails &details, UserPrompts &prompts)
{
    const QString driver = Connections::driverOf(details.type());
    return !driver.isEmpty() &&
           DatabaseManger::checkDatabaseVersion(driver, details.databaseName(), details.host(),
                                                details.user(), details.password(), details.port(), prompts);
}

QStringList Collection::tagNames(const DBDetails &details)
{
    return DatabaseManger::tagNames(details);
}

Collection *makeCollection(int type, const QString &host, const QString &databaseName, const QString &user,
                           const QString &password, int port)
{
    if (type == Constants::localDatabase)
        return new SqliteCollection(host, databaseName, user, password, port);
    if (type == Constants::serverDatabase)
        return new PostgresCollection(host, databaseName, user, password, port);
    return nullptr;
}
