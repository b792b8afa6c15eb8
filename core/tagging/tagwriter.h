#pragma once

#include "core/tagging/tagchange.h"

#include <QHash>
#include <QString>

#include <functional>

class BaseDBProvider;

/**
 * Links files to tags and unlinks them, many pairs in a statement, and notes which pairs were really changed:
 * those that stand already, or not at all, are left out, as are files and tags that there are not. Runs
 * within a transaction of its owner, on the thread of the connection (an empty name: the default one).
 */
class TagWriter
{
public:
    /** Gets the number of pairs that are through; false ends the writing. */
    using Step = std::function<bool(qint64 pairs)>;

    TagWriter(BaseDBProvider &provider, const QString &connectionName)
        : m_provider(provider), m_connectionName(connectionName)
    {
    }

    /** Once. False for a failure, of which the provider tells, or when the step ended it: to be rolled back.
     */
    bool write(const TagChanges &changes, const Step &step = {});
    /** What it has changed, tags and files by rising ids. */
    const TagChanges &done() const { return m_done; }

private:
    using Files = QVector<qint64> TagChange::*;
    using Statement = QString (*)(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);

    bool writeAll(const TagChanges &changes, Files files, Statement statement, const Step &step);
    bool writeProduct(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds, Files files,
                      Statement statement, const Step &step);
    bool run(const QString &statement, Files files);
    TagChange &changeOf(qint64 tagId);

    BaseDBProvider &m_provider;
    const QString m_connectionName;
    TagChanges m_done;
    QHash<qint64, int> m_places;
    qint64 m_pairs = 0;
};
