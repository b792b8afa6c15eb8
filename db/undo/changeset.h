#pragma once

#include <QStringList>
#include <QVariant>
#include <QVector>

/** The tables whose rows are kept of an edit, in an order in which they can be put back. */
enum class UndoTable {
    Tags,
    Groups,
    GroupLinks,
    Nodes,
    NodeLinks,
    AutoLinks,
    NodeAutoLinks,
    Relations,
    Files,
    Paths
};

/** The values of a row in the order of its columns; none when there is no row. */
using RowImage = QVector<QVariant>;

/** One row before and after an edit. */
struct RowChange
{
    UndoTable table = UndoTable::Tags;
    QStringList columns;
    RowImage before;
    RowImage after;

    /** Of either image, which has one when the other has none. */
    QVariant value(const QString &column) const
    {
        const int at = columns.indexOf(column);
        return at < 0 ? QVariant() : before.isEmpty() ? after.value(at) : before.value(at);
    }
    qint64 id(const QString &column) const { return value(column).toLongLong(); }
};

/** A tag that files got, or lost; those that had it, or had it not, are not among them. */
struct TagLinks
{
    qint64 tagId = 0;
    QVector<qint64> fileIds;
    bool areAdded = true;
};

/** What one edit changed in the database. */
struct ChangeSet
{
    QVector<RowChange> rows;
    QVector<TagLinks> links;

    bool isEmpty() const { return rows.isEmpty() && links.isEmpty(); }
    ChangeSet inverted() const
    {
        ChangeSet set = *this;
        for (RowChange &row : set.rows)
            row.before.swap(row.after);
        for (TagLinks &link : set.links)
            link.areAdded = !link.areAdded;
        return set;
    }
};

/** One step that can be taken back: what it changed, edit by edit, and how it is called. */
struct EditStep
{
    QVector<ChangeSet> edits;
    QString name;    ///< "Add tags to 3 files"
    QString outcome; ///< "Letters added to 3 files"
};
