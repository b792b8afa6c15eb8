#pragma once

#include "db/sql/basedbprovider.h"
#include "db/undo/changeset.h"

#include <QHash>
#include <QSet>

/** What the statements of a kept table need to know of it. */
struct UndoTableInfo
{
    QString name;
    QStringList keyColumns;
};

/** Rows by their keys, as text. */
struct RowImages
{
    QStringList columns;
    QHash<QString, RowImage> rows;
};

/**
 * Reads whole rows of the tables that edits change, with all their columns, also those that no record keeps.
 * On the default connection and the GUI thread, or on those of the provider that it is given.
 */
class RowReader : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit RowReader(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);
    /** Its statements are run by the owner of another connection, which is borrowed and tells of errors. */
    RowReader(const AbstractQueryConstructor *constructor, BaseDBProvider &runner,
              const QString &connectionName);

    static const UndoTableInfo &infoOf(UndoTable table);
    static QString keyOf(UndoTable table, const QStringList &columns, const RowImage &row);

    /** Adds the rows whose column has one of the values. */
    bool read(UndoTable table, const QString &column, const QStringList &values, RowImages &images);
    /** Those of the numbers that stand in a column of a table. */
    bool readIds(const QString &table, const QString &column, const QVector<qint64> &ids,
                 QSet<qint64> &found);

protected:
    bool execute(const QString &statement);
    /** Hands on the rows, which are lent. */
    bool readSlices(const QString &statement, const SliceTaker &take);

private:
    BaseDBProvider *m_runner = this;
    QString m_connectionName;
};
