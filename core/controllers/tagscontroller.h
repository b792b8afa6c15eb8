#pragma once

#include "core/controllers/abstractcontroller.h"
#include "core/records/chosentags.h"
#include "db/sql/tabledata.h"
#include "models/tags/tagshost.h"

#include <QHash>
#include <QList>
#include <QUrl>
#include <QVector>

class BrowsTreeController;
class FavouriteTags;
class GroupsController;
class MainViewController;
class QSortFilterProxyModel;
class RelationsController;
class TagCounts;
class TagsFilterProxy;
class TagsGroupProxy;
class TagsTableModel;

/** Tags: adding, naming, removing, and showing the files that bear them. GUI thread. */
class TagsController : public AbstractController, public TagsHost
{
    Q_OBJECT

public:
    TagsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                   Collection *collection);

    void setPeers(BrowsTreeController *browsTree, GroupsController *groups, MainViewController *mainView,
                  RelationsController *relations);
    void load() override;

    /** Gives the id of the new tag, which is linked to the files too; 0 when the name is taken or blank, or
     * on failure. */
    qint64 addTag(const QString &name, const QVector<qint64> &fileIds = {});
    /** The same with a place in a group: both or neither. */
    qint64 addTagToGroup(const QString &name, qint64 groupId);
    /**
     * Links tags to files and makes the new ones among them, all or nothing. False when that failed, or one
     * of the tags is gone; the user knows why.
     */
    bool tagFiles(const QVector<qint64> &fileIds, const ChosenTags &tags);
    /** The same for nodes of the tags below a node, 0 for the top level. */
    bool addNodesOf(const ChosenTags &tags, qint64 parentId);
    /** The same for tags below a path of the relationships, an empty one for the top level. */
    bool addRelationsOf(const ChosenTags &tags, const QString &parentPath);
    /** Whether all of these can be used: the known ones are there, the new ones can be made. Tells why not.
     */
    bool areUsable(const ChosenTags &tags);
    /** False when the name is taken or blank, or the edit was refused. */
    bool renameTag(qint64 tagId, const QString &name) override;
    void changeDescription(qint64 tagId, const QString &text) override;
    /** Removes the tags with their nodes, relationships and links to files, all or nothing. */
    void removeTags(const QVector<qint64> &tagIds);

    /** The others go, and all that they have goes to the target: one step of undo. */
    bool mergeTags(qint64 target, const QVector<qint64> &others);
    /** On how many nodes of the tree that is shown, and in how many relationships, one of the tags stands. */
    int nodesCount(const QVector<qint64> &tagIds) const;
    int relationsCount(const QVector<qint64> &tagIds) const;

    /** Narrows the table to names that match the text, in which * and ? stand for anything. */
    void setTagFilter(const QString &text);
    void linkFilesToTag(qint64 tagId, const QVector<qint64> &fileIds) override;
    /** Adds files, folders and hyperlinks to the database, with this tag. */
    void addFilesToTag(qint64 tagId, const QList<QUrl> &urls) override;

    /** Whether a node, a relationship or a file has one of the tags. */
    bool isTagInUse(const QVector<qint64> &tagIds) const;
    /** How many files bear the tag itself. */
    qint64 filesCount(qint64 tagId) const override;
    FileCount fileCount(qint64 tagId) const override;
    QHash<qint64, QString> allNames() const;
    QHash<qint64, QString> tagsNames(const QVector<qint64> &tagIds) const;
    /** Empty for an unknown tag. */
    QString tagName(qint64 tagId) const;

    /** Shows the files with all of the tags, or with one of them, and marks the tags in the table. */
    void showTagsSelected(const QVector<qint64> &tagIds);
    void showTagsEitherOr(const QVector<qint64> &tagIds);
    /** The tags whose files are shown. */
    QVector<qint64> selectedTagIds() const { return m_markedTagIds; }
    void markTags(const QVector<qint64> &tagIds);
    /** Marks the tags of a selection that was made out of another one. */
    void markNarrowed(const QVector<qint64> &tagIds);
    void clearMark();

    /** The numbers of files beside the names. */
    TagCounts *counts() const { return m_counts; }
    /** The tags with keys of their own, and those that were typed last. */
    FavouriteTags *favourites() const { return m_favourites; }
    /** All tags; null without a manager. */
    TagsTableModel *tableModel() const { return m_tableModel; }
    /** The tags of one tab. */
    TagsGroupProxy *groupProxy() const { return m_groupProxy; }
    /** What the table of tags shows: those of the tab that match the filter. */
    QSortFilterProxyModel *filterProxy() const;

signals:
    void tagDuplicated();
    void markedTagsChanged(QVector<qint64> tagIds);
    /** Tags have come, gone or other names. */
    void namesChanged();

public slots:
    /** Marks of tags that are no longer there go. */
    void loadedDataFromDB(const TableData &tags);

private:
    /** Whether a tag can have this name; if not, the user hears why. */
    bool mayName(const QString &name);
    bool refuse(const QString &title, const QString &text);
    bool noteUse(bool isDone, const ChosenTags &tags);
    QVector<qint64> idsOf(const QStringList &names) const;
    void showSelectionAgain();
    void tagsMerged(qlonglong target, const QVector<qint64> &others);
    /** What was asked of files by tags that are gone is asked by the tag that they became. */
    void showMerged();

    BrowsTreeController *m_browsTree = nullptr;
    GroupsController *m_groups = nullptr;
    MainViewController *m_mainView = nullptr;
    RelationsController *m_relations = nullptr;
    TagsTableModel *m_tableModel = nullptr;
    TagCounts *m_counts;
    FavouriteTags *m_favourites;
    TagsGroupProxy *m_groupProxy;
    TagsFilterProxy *m_filterProxy;
    QVector<qint64> m_markedTagIds;
    enum class Shown { Nothing, AllOf, AnyOf, Narrowed };
    Shown m_shown = Shown::Nothing;
    qint64 m_mergedInto = 0;
    QVector<qint64> m_merged; ///< until they are gone
};
