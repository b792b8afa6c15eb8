#pragma once

#include "models/base/edithost.h"

#include <QString>
#include <QVector>

/** The edits of tag groups that TagGroupModel hands to the controller above it. GUI thread. */
class TagGroupsHost : public virtual EditHost
{
public:
    /** False when another group has the name, when it is blank, or on failure. */
    virtual bool renameGroup(qint64 groupId, const QString &name) = 0;
    /** Whether the groups are tabs. */
    virtual void setGroupVisible(const QVector<qint64> &groupIds, bool visible) = 0;
};
