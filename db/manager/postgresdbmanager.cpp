#include "db/manager/postgresdbmanager.h"

#include "app/settings/constants.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgeneralprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/singlevalue.h"
#include "db/manager/foreignnews.h"
#include "db/sql/postgresqueryconstructor.h"
#include "fileops/provider/postgresfileoperationprovider.h"

#include <QGuiApplication>
#include <QTimer>

PostgresDBManager::PostgresDBManager(const QString &driver, const QString &database, const QString &host,
                                     const QString &user, const QString &password, int port, QObject *parent)
    : DatabaseManger(driver, database, host, user, password, port, parent)
{
    setConstructor(std::make_unique<PostgresQueryConstructor>());
    Providers made;
    made.browsTree = new PostgresBrowsTreeProvider(constructor(), this);
    made.tags = new PostgresTagsProvider(constructor(), this);
    made.groups = new PostgresGroupsProvider(constructor(), this);
    m_stamps = new PostgresGeneralProvider(constructor(), this);
    made.general = m_stamps;
    made.mainView = new MainViewProvider(constructor(), this);
    made.relationTree = new RelationTreeProvider(constructor(), this);
    made.fileOperation = new PostgresFileOperationProvider(constructor(), details(), this);
    setProviders(made);
    m_news = new ForeignNews(constructor(), records(), *thumbnailCache(), errors(), this);
    followOthers();
    using Trees = BrowsTreeProvider;
    using Manager = PostgresDBManager;
    connect(made.browsTree, &Trees::gotAllBrowsTreesInfo, this, &Manager::parseAllBrowsTreesInfo);
    connect(made.browsTree, &Trees::addedNewBrowsingTree, this, &Manager::parseAddedNewBrowsingTree);
    connect(made.browsTree, &Trees::removedBrowsingTree, this, &Manager::parseRemovedBrowsingTree);
    connect(made.browsTree, &Trees::updatedBrowsingTree, this, &Manager::parseUpdatedBrowsingTree);
}

QSqlError PostgresDBManager::openDB()
{
    QSqlError error = DatabaseManger::openDB();
    // What others change from here on is either in the first load or news after it.
    if (error.type() == QSqlError::NoError) {
        m_news->listen();
        aboutToLoad();
    }
    return error;
}

void PostgresDBManager::closeDB()
{
    m_news->stop();
    DatabaseManger::closeDB();
}

void PostgresDBManager::followOthers()
{
    m_news->setUp(providers(), [this] { return mayMergeNews(); });
    connectErrors(m_news->provider());
    connect(m_news, &ForeignNews::editDropped, this, &PostgresDBManager::warnOfChanges);
    connect(m_news, &ForeignNews::fullReloadDue, this, &PostgresDBManager::reloadLater);
    connect(m_news, &ForeignNews::aboutToMerge, this, &PostgresDBManager::aboutToMergeForeignChanges);
    connect(m_news, &ForeignNews::partMerged, this, &PostgresDBManager::foreignChangesShown);
    connect(m_news, &ForeignNews::merged, this, &PostgresDBManager::foreignChangesMerged);
    connect(m_news, &ForeignNews::treesChanged, this, [this] {
        loadBrowsingTrees();
        // Another one is to be shown, wherever its name and its nodes stand.
        if (!browsingTrees().contains(m_currentTree))
            reloadLater();
    });
    connect(this, &DatabaseManger::startedAddingFiles, this, [this] { m_isOperating = true; });
    connect(this, &DatabaseManger::finishedAddingFiles, this, [this] { m_isOperating = false; });
}

bool PostgresDBManager::mayMergeNews() const
{
    // Whoever is asked something would find other records behind the question.
    const bool isGui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return !m_isOperating && !isReloadDue() && loadState().isWhole() && !loadState().isUnsettled() &&
           !(isGui && QGuiApplication::modalWindow());
}

int PostgresDBManager::dbType() const
{
    return Constants::serverDatabase;
}

bool PostgresDBManager::createDatabase()
{
    return false;
}

void PostgresDBManager::setCurrentBrowsingTree(qint64 treeId)
{
    const Map<qint64, QString> &trees = browsingTrees();
    const bool isGone = treeId != 0 && !trees.contains(treeId);
    if (isGone) {
        // From the event loop: a box in the middle of a reload would show half of it.
        QTimer::singleShot(0, this, [this] {
            emit error(tr("Browsing tree error"),
                       tr("Selected browsing tree no longer exists.\nSelected default browsing tree."));
        });
    }
    m_currentTree = treeId;
    if (treeId == 0 || isGone)
        m_currentTree = trees.isEmpty() ? PostgresBrowsTreeProvider::defaultTree : trees.begin().key();
    if (providers().browsTree)
        providers().browsTree->setCurrentTree(m_currentTree);
    if (providers().fileOperation)
        providers().fileOperation->setBrowsingTreeId(m_currentTree);
    // A load of everything comes to them anyway.
    if (!loadState().isLoading())
        loadAllNodes();
}

bool PostgresDBManager::beginReading()
{
    GeneralProvider *general = providers().general;
    if (!general->runSync(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY;")))
        return false;
    if (DatabaseManger::beginReading()) {
        m_sharedState =
            SingleValue::read(*general, QStringLiteral("SELECT pg_export_snapshot();")).toString();
        return true;
    }
    general->rollbackTransaction();
    return false;
}

void PostgresDBManager::endReading()
{
    // Nothing was written: it only lets go.
    m_sharedState.clear();
    providers().general->rollbackTransaction();
}

bool PostgresDBManager::isDataCurrent()
{
    return mayEdit({});
}

bool PostgresDBManager::mayEdit(const EditBase &base)
{
    return isReadyForEdits() && (m_news->isThere() ? m_news->mayEdit(base) : !haveOthersWritten());
}

bool PostgresDBManager::beginEdit(const EditBase &base)
{
    if (!m_news->isThere())
        return mayEdit(base);
    if (!isReadyForEdits() || !m_news->begin(base))
        return false;
    m_isInEdit = true;
    const QVector<BaseDBProvider *> joining = editors();
    for (BaseDBProvider *provider : joining)
        provider->joinTransaction(&m_news->queue());
    return true;
}

EditRunHost::EditEnd PostgresDBManager::endEdit(bool isDone)
{
    if (!m_isInEdit)
        return isDone ? Ended : Failed;
    m_isInEdit = false;
    ChangeJournal::Commit commit = ChangeJournal::Failed;
    if (isDone)
        commit = m_news->commit();
    else
        m_news->rollBack();
    const QVector<BaseDBProvider *> leaving = editors();
    for (BaseDBProvider *provider : leaving)
        provider->leaveTransaction(commit == ChangeJournal::Committed);
    return commit == ChangeJournal::Committed ? Ended : commit == ChangeJournal::Outdated ? Again : Failed;
}

bool PostgresDBManager::mayTouch(const EditBase &base)
{
    return !m_isInEdit || m_news->mayTouch(base);
}

void PostgresDBManager::include(BaseDBProvider *provider)
{
    DatabaseManger::include(provider);
    if (m_isInEdit)
        provider->joinTransaction(&m_news->queue());
}

void PostgresDBManager::toldEdit()
{
    m_news->queue().close();
}

bool PostgresDBManager::haveOthersWritten()
{
    PostgresGeneralProvider::Changes changes;
    // Without a stamp nothing can be told, and nothing is written.
    if (!m_stamps->readLastChanges(changes) || !changes.ofAll.isValid())
        return true;
    if (!isNews(changes.ofOthers))
        return false;
    m_lastModification = changes.ofOthers;
    dropEdit();
    return true;
}

void PostgresDBManager::refreshModificationDate()
{
    QDateTime change;
    if (!m_areStampsNamed && m_stamps->lastChangeDate(change))
        noteChange(change);
}

void PostgresDBManager::noteChange(const QDateTime &change)
{
    // Where stamps tell whose they are, those of own changes are no news anyway, and passing over what others
    // did at the same time would hide it.
    if (!m_areStampsNamed && !m_missesChanges && isNews(change))
        m_lastModification = change;
}

void PostgresDBManager::aboutToLoad()
{
    PostgresGeneralProvider::Changes changes;
    m_missesChanges = false;
    m_news->aboutToLoad();
    if (!m_stamps->readLastChanges(changes))
        return;
    m_areStampsNamed = changes.areNamed;
    if (isNews(changes.ofOthers))
        m_lastModification = changes.ofOthers;
}

void PostgresDBManager::aboutToCommit(const QDateTime &lastChange)
{
    // The own change, which comes after it, is not to hide it: the next edit finds news then.
    m_missesChanges = m_missesChanges || (!m_areStampsNamed && isNews(lastChange));
}

bool PostgresDBManager::isNews(const QDateTime &change) const
{
    return change.isValid() && (!m_lastModification.isValid() || change > m_lastModification);
}

void PostgresDBManager::parseAllBrowsTreesInfo(bool ok, const TableData &rows)
{
    loadState().note(LoadState::Trees, ok);
    if (ok) {
        browsingTrees().clear();
        for (const TableRowData *row : rows) {
            parseAddedNewBrowsingTree(row->value(QStringLiteral("tree_id")).toLongLong(),
                                      row->value(QStringLiteral("tree_name")).toString());
        }
    }
    qDeleteAll(rows);
}

void PostgresDBManager::parseAddedNewBrowsingTree(qlonglong treeId, const QString &name)
{
    browsingTrees().insert(treeId, name);
}

void PostgresDBManager::parseRemovedBrowsingTree(qlonglong treeId)
{
    browsingTrees().remove(treeId);
}

void PostgresDBManager::parseUpdatedBrowsingTree(qlonglong treeId, const QString &name)
{
    browsingTrees().insert(treeId, name);
}
