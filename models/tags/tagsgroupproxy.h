#pragma once

#include <QSet>
#include <QSortFilterProxyModel>
#include <QVector>

/**
 * Narrows the table of tags to what a tab shows: all tags, the tags on some but not all of the files shown,
 * or the tags of one group. GUI thread.
 */
class TagsGroupProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /** The values of groupId that are no group. */
    enum Tab : int { AllTagsTab = 0, DTagsTab = -1 };

    explicit TagsGroupProxy(QObject *parent = nullptr);

    qint64 groupId() const { return m_groupId; }
    void setGroupId(qint64 groupId);
    const QVector<qint64> &dTagIds() const { return m_dTagIds; }

public slots:
    void setDTagIds(const QVector<qint64> &tagIds);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    qint64 m_groupId = AllTagsTab;
    QVector<qint64> m_dTagIds;
    QSet<qint64> m_dTagSet;
};
