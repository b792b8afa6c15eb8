#pragma once

#include <QObject>
#include <QString>
#include <QVector>

/**
 * One tag as a row of the table of tags, which makes and owns it. GUI thread only. Every setter compares
 * first and does nothing on equality; signals carry the id of the tag, as one slot serves all rows.
 */
class TagItem : public QObject
{
    Q_OBJECT

public:
    explicit TagItem(QObject *parent = nullptr);
    /** The creation date is seconds since the epoch; groups are the ids of the groups that hold the tag. */
    TagItem(qint64 id, const QString &name, const QString &description, int creationDate,
            qint64 filesCount = 0, const QVector<qint64> &groups = {}, QObject *parent = nullptr);

    qint64 id() const { return m_id; }
    const QString &name() const { return m_name; }
    const QString &description() const { return m_description; }
    int creationDate() const { return m_creationDate; }
    qint64 filesCount() const { return m_filesCount; }
    const QVector<qint64> &groups() const { return m_groups; }

    void setName(const QString &name);
    void setDescription(const QString &description);
    void setCreationDate(int seconds) { m_creationDate = seconds; }
    void setFilesCount(qint64 filesCount);
    void setGroups(const QVector<qint64> &groups);
    /** False when the tag is in the group already. */
    bool addGroup(qint64 groupId);
    bool removeGroup(qint64 groupId);

signals:
    void tagNameChanged(qlonglong id, QString name);
    void tagDescriptionChanged(qlonglong id, QString description);
    /** A count that does not fit is given as the largest int. */
    void tagFilesCountChanged(qlonglong id, int filesCount);
    void tagGroupsChanged(qlonglong id, QVector<qint64> groups);

private:
    qint64 m_id = 0;
    QString m_name;
    QString m_description;
    int m_creationDate = 0;
    qint64 m_filesCount = 0;
    QVector<qint64> m_groups;
};
