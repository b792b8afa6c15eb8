#pragma once

#include "core/records/recordtypes.h"

#include <QAbstractTableModel>
#include <QVector>

class TagGroupsHost;

/**
 * The list of tag groups for the dialogs, in the order of their ids: name, and whether the group is a tab.
 * The map is the manager's and outlives the model; edits go to the host. GUI thread.
 */
class TagGroupModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { GroupColumn, TabColumn, ColumnCount };

    TagGroupModel(TagGroupsHost *host, GroupMap *groups, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /** False when nothing has changed, whatever the reason. */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

public slots:
    /** Resets the model from the map. */
    void loadModelData();
    /** All values may have changed; the groups are the same. */
    void updateModel();

private:
    const GroupItem *groupAt(const QModelIndex &index) const;
    void groupInserted(const QVariant &groupId);
    void groupDeleted(const QVariant &groupId);
    void groupChanged(qint64 groupId);
    void follow(const GroupItem *group);

    TagGroupsHost *m_host;
    GroupMap *m_groups;
    QVector<qint64> m_groupIds; // the map's keys, as far as the views know
};
