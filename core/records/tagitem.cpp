#include "core/records/tagitem.h"

#include <limits>

TagItem::TagItem(QObject *parent) : QObject(parent) {}

TagItem::TagItem(qint64 id, const QString &name, const QString &description, int creationDate,
                 qint64 filesCount, const QVector<qint64> &groups, QObject *parent)
    : QObject(parent),
      m_id(id),
      m_name(name),
      m_description(description),
      m_creationDate(creationDate),
      m_filesCount(filesCount),
      m_groups(groups)
{
}

void TagItem::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit tagNameChanged(m_id, m_name);
}

void TagItem::setDescription(const QString &description)
{
    if (m_description == description)
        return;
    m_description = description;
    emit tagDescriptionChanged(m_id, m_description);
}

void TagItem::setFilesCount(qint64 filesCount)
{
    if (m_filesCount == filesCount)
        return;
    m_filesCount = filesCount;
    // The signal carries an int, which nobody may change any more.
    const qint64 largest = std::numeric_limits<int>::max();
    emit tagFilesCountChanged(m_id, static_cast<int>(qMin(m_filesCount, largest)));
}

void TagItem::setGroups(const QVector<qint64> &groups)
{
    if (m_groups == groups)
        return;
    m_groups = groups;
    emit tagGroupsChanged(m_id, m_groups);
}

bool TagItem::addGroup(qint64 groupId)
{
    if (m_groups.contains(groupId))
        return false;
    m_groups.append(groupId);
    emit tagGroupsChanged(m_id, m_groups);
    return true;
}

bool TagItem::removeGroup(qint64 groupId)
{
    if (m_groups.removeAll(groupId) == 0)
        return false;
    emit tagGroupsChanged(m_id, m_groups);
    return true;
}
