#pragma once

#include "models/base/edithost.h"
#include "models/counts/filecount.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <QVector>

/** What TagsTableModel asks of the controller above it, and the edits that a view makes through it. GUI
 * thread. */
class TagsHost : public virtual EditHost
{
public:
    /** How many files bear the tag itself. */
    virtual qint64 filesCount(qint64 tagId) const = 0;
    /** The same with those that are shown, for who wants to see it beside the name. */
    virtual FileCount fileCount(qint64 tagId) const = 0;

    /** False when the name is taken or blank, or the edit was refused. */
    virtual bool renameTag(qint64 tagId, const QString &name) = 0;
    virtual void changeDescription(qint64 tagId, const QString &text) = 0;
    virtual void linkFilesToTag(qint64 tagId, const QVector<qint64> &fileIds) = 0;
    /** Adds files, folders and hyperlinks to the database, with this tag. */
    virtual void addFilesToTag(qint64 tagId, const QList<QUrl> &urls) = 0;
};
