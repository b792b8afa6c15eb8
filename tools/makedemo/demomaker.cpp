#include "tools/makedemo/demomaker.h"

#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/file.h"
#include "core/records/tbnode.h"
#include "models/base/modelroles.h"
#include "models/contents/contentsmodel.h"
#include "models/trees/tbtreemodel.h"
#include "tools/makedemo/demopainter.h"

#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTimer>
#include <QUrl>

namespace {

constexpr int worstCaseMilliseconds = 60000;
const QString invertedMark = QStringLiteral("- ");

QString plainName(const QString &name)
{
    return name.startsWith(invertedMark) ? name.mid(invertedMark.size()) : name;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

TBnode *childOf(TBnode *parent, qint64 tagId)
{
    for (TBnode *child : parent->children()) {
        if (child->nodeType() == TagNode && child->tagId() == tagId)
            return child;
    }
    return nullptr;
}

} // namespace

DemoMaker::DemoMaker(const QString &databasePath, const QString &externalFolder)
    : m_databasePath(databasePath), m_externalFolder(externalFolder)
{
}

DemoMaker::~DemoMaker()
{
    if (m_collection)
        m_collection->close();
}

bool DemoMaker::make()
{
    if (!openNew() || !addTags() || !addNodes())
        return false;
    addRelationships();

    AddingSettings::setLinkToFiles(false);
    if (!addPictures() || !addTexts(DemoContents::texts(), m_folder.path()))
        return false;
    AddingSettings::setLinkToFiles(true);
    return QDir().mkpath(m_externalFolder) && addTexts(DemoContents::externalTexts(), m_externalFolder) &&
           addHyperlinks() && forgetPlace();
}

bool DemoMaker::forgetPlace()
{
    // A folder that nobody has: wherever the database goes, its files are those beside it.
    QSqlQuery paths;
    if (paths.exec(QStringLiteral("UPDATE file_paths SET path = '/' || rel_path;")))
        return true;
    qWarning() << paths.lastError();
    return false;
}

bool DemoMaker::openNew()
{
    QFile::remove(m_databasePath);
    m_collection.reset(
        makeCollection(Constants::localDatabase, QString(), m_databasePath, QString(), QString(), 0));
    if (!m_collection->createDatabase())
        return false;
    const QSqlError error = m_collection->open();
    if (error.isValid() && error.type() != QSqlError::NoError) {
        qWarning() << error;
        return false;
    }
    m_collection->load();
    return true;
}

bool DemoMaker::addTags()
{
    for (const DemoContents::Group &group : DemoContents::groups()) {
        const qint64 groupId = m_collection->groupsController()->addGroup(group.name);
        for (const QString &name : group.tags)
            m_tagIds.insert(name, m_collection->tagsController()->addTag(name));
        m_collection->groupsController()->assignTags(ids(group.tags), {groupId});
        if (groupId <= 0)
            return false;
    }
    return !m_tagIds.values().contains(0);
}

bool DemoMaker::addNodes()
{
    BrowsTreeController *trees = m_collection->browsTreeController();
    for (const DemoContents::Node &entry : DemoContents::nodes()) {
        TBnode *parent = trees->model()->allFilesNode();
        for (int i = 0; i + 1 < entry.path.size() && parent; ++i)
            parent = childOf(parent, m_tagIds.value(plainName(entry.path.at(i))));
        if (!parent)
            return false;
        const QString name = entry.path.last();
        const qint64 tagId = m_tagIds.value(plainName(name));
        trees->addNodesBelow({tagId}, parent->id());
        const TBnode *node = childOf(parent, tagId);
        if (!node)
            return false;
        if (name.startsWith(invertedMark))
            trees->changeInversion(node->id(), true);
        // New nodes heed the relationships; the demo shows both ways.
        if (!entry.usesRelationships)
            trees->changeTrOption(node->id(), false);
    }
    return true;
}

void DemoMaker::addRelationships()
{
    for (const QStringList &path : DemoContents::relationships()) {
        QStringList parents;
        for (int i = 0; i + 1 < path.size(); ++i)
            parents.append(QString::number(m_tagIds.value(path.at(i))));
        m_collection->relationsController()->addChildren(parents.join(QLatin1Char('.')), ids({path.last()}));
    }
}

bool DemoMaker::addTexts(const QVector<DemoContents::TextFile> &texts, const QString &folder)
{
    for (const DemoContents::TextFile &text : texts) {
        const QString path = QDir(folder).filePath(text.name);
        if (!writeFile(path, text.text.toUtf8()) ||
            !add(QUrl::fromLocalFile(path), text.tags, text.description))
            return false;
    }
    return true;
}

bool DemoMaker::addPictures()
{
    for (const DemoContents::Picture &picture : DemoContents::pictures()) {
        const QString path = m_folder.filePath(picture.name);
        if (!paintDemoPicture(picture).save(path, "PNG") ||
            !add(QUrl::fromLocalFile(path), picture.tags, picture.description))
            return false;
    }
    return true;
}

bool DemoMaker::addHyperlinks()
{
    for (const DemoContents::Hyperlink &link : DemoContents::hyperlinks()) {
        if (!add(QUrl(link.address), link.tags, link.description))
            return false;
    }
    return true;
}

bool DemoMaker::add(const QUrl &url, const QStringList &tags, const QString &description)
{
    MainViewController *files = m_collection->mainViewController();
    const int before = files->contentsModel()->rowCount();
    QEventLoop loop;
    connect(files->contentsModel(), &QAbstractItemModel::rowsInserted, &loop, &QEventLoop::quit);
    connect(files->contentsModel(), &QAbstractItemModel::modelReset, &loop, &QEventLoop::quit);
    QTimer::singleShot(worstCaseMilliseconds, &loop, &QEventLoop::quit);
    files->addUrls({url}, ids(tags));
    loop.exec();
    if (files->contentsModel()->rowCount() != before + 1) {
        qWarning() << "This was not added:" << url;
        return false;
    }
    if (!description.isEmpty()) {
        const QModelIndex added = files->contentsModel()->index(before, 0);
        files->updateFileDescription(added.data(ContentsRoles::FileId).toLongLong(), description);
    }
    return true;
}

QVector<qint64> DemoMaker::ids(const QStringList &tags) const
{
    QVector<qint64> ids;
    for (const QString &name : tags)
        ids.append(m_tagIds.value(name));
    return ids;
}
