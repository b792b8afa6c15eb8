#pragma once

#include <QObject>
#include <QString>
#include <QVector>

/**
 * One tag group: a tab over the table of tags. Made and owned by the cache of the manager; GUI thread only.
 * Every setter compares first and does nothing on equality.
 */
class GroupItem : public QObject
{
    Q_OBJECT

public:
    explicit GroupItem(QObject *parent = nullptr);
    GroupItem(qint64 id, const QString &name, const QVector<qint64> &tags, bool visible,
              QObject *parent = nullptr);

    qint64 id() const { return m_id; }
    const QString &name() const { return m_name; }
    const QVector<qint64> &tags() const { return m_tags; }
    bool hasTag(qint64 tagId) const { return m_tags.contains(tagId); }
    /** Whether the group is shown as a tab. */
    bool isVisible() const { return m_visible; }

    void setName(const QString &name);
    void setVisible(bool visible);
    void clearTags();
    void setTags(const QVector<qint64> &tagIds);
    /** False when the tag is there already. */
    bool addTag(qint64 tagId);
    bool removeTag(qint64 tagId);

signals:
    void groupNameChanged(QString name);
    void groupVisibilityChanged(bool visible);
    void groupTagsChanged(QVector<qint64> tagIds);

private:
    qint64 m_id = 0;
    QString m_name;
    QVector<qint64> m_tags;
    bool m_visible = false;
};
