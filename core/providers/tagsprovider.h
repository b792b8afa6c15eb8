#pragma once

#include "db/sql/basedbprovider.h"

/**
 * The statements of the tags. GUI thread, default connection; each operation is over, and its signal out,
 * when it returns. A list without ids runs nothing and emits nothing.
 */
class TagsProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit TagsProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** Adds a row and emits tagsUpdated with it. Gives the new id, 0 on failure. */
    virtual qint64 addTag(const QString &name);

    void loadAllTags();
    void loadTags(const QVector<qint64> &ids);
    /** Appends the rows of those that are there, which the holder of `rows` owns, also after a failure. */
    bool readTags(const QVector<qint64> &ids, TableData &rows);

    /** Writes one column of one tag and emits tagsUpdated with its row; false on failure. */
    bool updateTag(qint64 id, const QString &column, const QString &value);

    /** Removes the rows of the tags alone; whatever refers to them goes by TagRemover. */
    bool removeTags(const QVector<qint64> &ids);

    /** Whether a node of any browsing tree has one of the tags; false on failure. */
    bool readUseOnNodes(const QVector<qint64> &ids, bool &isUsed);

signals:
    void gotAllTagInfo(bool ok, const TableData &table);
    void tagsUpdated(bool ok, const TableData &table);
    void tagsRemoved(bool ok, const QVector<qint64> &ids);

protected:
    /** These will be read when the edit that goes on is through. */
    void expectTags(const QVector<qint64> &ids);
    QString selectText() const;
    /** The insert of a new tag without its end, so that a dialect may add to it. */
    QString insertText(const QString &name) const;

private:
    QString conditionText(const QVector<qint64> &ids) const;
};
