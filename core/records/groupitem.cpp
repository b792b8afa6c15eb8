#include "core/records/groupitem.h"

GroupItem::GroupItem(QObject *parent) : QObject(parent) {}

GroupItem::GroupItem(qint64 id, const QString &name, const QVector<qint64> &tags, bool visible,
                     QObject *parent)
    : QObject(parent), m_id(id), m_name(name), m_tags(tags), m_visible(visible)
{
}

void GroupItem::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit groupNameChanged(m_name);
}

void GroupItem::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    emit groupVisibilityChanged(m_visible);
}

void GroupItem::clearTags()
{
    setTags({});
}

void GroupItem::setTags(const QVector<qint64> &tagIds)
{
    if (m_tags == tagIds)
        return;
    m_tags = tagIds;
    emit groupTagsChanged(m_tags);
}

bool GroupItem::addTag(qint64 tagId)
{
    if (m_tags.contains(tagId))
        return false;
    // At the end: a group keeps the order in which its tags came.
    m_tags.append(tagId);
    emit groupTagsChanged(m_tags);
    return true;
}

bool GroupItem::removeTag(qint64 tagId)
{
    if (m_tags.removeAll(tagId) == 0)
        return false;
    emit groupTagsChanged(m_tags);
    return true;
}
