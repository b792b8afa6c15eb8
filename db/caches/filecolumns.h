#pragma once

#include "core/records/datatype.h"
#include "db/sql/longtext.h"
#include "db/sql/tabledata.h"

#include <QStringList>

class File;

/**
 * Where the columns of the files stand in the rows of one result: looked up once, read a million times.
 */
class FileColumns
{
public:
    explicit FileColumns(const QStringList &columns);

    /** True for the list of names that this was made for. */
    bool fits(const QStringList &columns) const { return columns == m_columns; }

    qint64 fileId(const TableRowData &row) const { return number(row, m_fileId); }
    /** 0 for a file without tags. */
    qint64 tagId(const TableRowData &row) const { return number(row, m_tagId); }

    /** A record without tags, whose owner the caller becomes. */
    File *makeFile(const TableRowData &row) const;

    /** Writes the values into the record; true when that changed anything that can be seen of it. */
    bool update(File &file, const TableRowData &row) const;

private:
    int find(const char *column) const { return m_columns.indexOf(QLatin1String(column)); }
    static qint64 number(const TableRowData &row, int column)
    {
        return column < 0 ? 0 : row.at(column).toLongLong();
    }
    static QString text(const TableRowData &row, int column)
    {
        return column < 0 ? QString() : LongText::kept(row.at(column).toString());
    }
    qint32 internal(const TableRowData &row) const { return m_internal < 0 ? 0 : row.at(m_internal).toInt(); }
    QString path(const TableRowData &row, int column) const;
    static bool set(File &file, DataType type, const QVariant &value);

    QStringList m_columns;
    int m_fileId;
    int m_name;
    int m_description;
    int m_size;
    int m_additionDate;
    int m_modificationDate;
    int m_idCode;
    int m_loadId;
    int m_storageId;
    int m_thumbnailId;
    int m_checksum;
    int m_internal;
    int m_tagId;
    int m_path;
    int m_relPath;
};
