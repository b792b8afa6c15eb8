#pragma once

#include "core/records/recordtypes.h"
#include "db/sql/tabledata.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QPixmap>
#include <QSet>
#include <QTimer>
#include <QVector>

class DatabaseManger;
class FileCount;
class TagRows;
class TagsHost;

/**
 * The table of all tags of the open database, a row a tag in the order of loading. Its rows follow the raw
 * rows of the manager; it keeps them in step with the tag groups and, for the numbers of files, with the file
 * records. It connects itself to the manager, after the host, which drops
 * its counts by the same signals; edits and drops go to the host. Both are borrowed and outlive the model;
 * without them it shows what its slots bring. GUI thread.
 */
class TagsTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { NameColumn, DescriptionColumn, CreationDateColumn, FilesColumn, ColumnCount };

    TagsTableModel(TagsHost *host, DatabaseManger *manager, QObject *parent = nullptr);
    ~TagsTableModel() override;

    /** Null outside the rows. */
    const TagItem *tagAt(int row) const;
    /** -1 for an unknown tag. */
    int rowOf(qint64 tagId) const;
    const QVector<qint64> &markedTagIds() const { return m_markedTagIds; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /** False when nothing has changed, whatever the reason. */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

public slots:
    void rowNameChanged(qlonglong tagId, const QString &name);
    void rowDescriptionChanged(qlonglong tagId, const QString &description);
    void rowFilesChanged(qlonglong tagId, qlonglong filesCount);
    void rowGroupsChanged(qlonglong tagId, const QVector<qint64> &groups);
    void addedGroup(const QVariant &groupId);
    void removedGroup(const QVariant &groupId);
    void updatedGroup(qint64 groupId, const QVector<qint64> &tagIds);

    /** Takes the place of all rows. */
    void loadTags(const TableData &tags);
    /** The rows are lent; each is listened to as long as it lives. A known tag is updated in its place. */
    void addTags(const TableData &tags);
    void addNewTag(TableRowData *tag);
    void removeTags(const QVector<qint64> &tagIds);
    /** The tags whose files the main view shows. */
    void setMarkedTagIds(const QVector<qint64> &tagIds);
    /** A file came, went or has other tags. */
    void updateFileCounts();

private:
    void connectManager();
    QVariant decoration(const TagItem &tag) const;
    QVariant text(const TagItem &tag, int column) const;
    FileCount fileCount(const TagItem &tag) const;
    bool editTag(const TagItem &tag, int column, const QString &value);
    void followItem(const TagItem *item);
    QHash<qint64, QVector<qint64>> groupsOf(const QVector<qint64> &tagIds) const;
    void applyGroup(qint64 groupId, const QVector<qint64> &tagIds);
    void announceGathered();
    void removeInOneGo(const QSet<qint64> &tagIds);
    void announceRow(qint64 tagId);
    void announceRows(int first, int last);

    TagsHost *m_host;
    DatabaseManger *m_manager;
    TagRows *m_rows;
    QVector<qint64> m_markedTagIds;
    mutable QPixmap m_mark;

    QHash<qint64, QVector<qint64>> m_groupTags; // as last noted in the rows
    QTimer m_announceTimer;                     // groups that come are told of together

    // While one change runs over many rows, its range is gathered and told once.
    bool m_isGathering = false;
    bool m_areGroupsChanging = false; // several of them
    int m_firstChanged = -1;
    int m_lastChanged = -1;
};
