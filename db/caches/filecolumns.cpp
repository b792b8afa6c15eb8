#include "db/caches/filecolumns.h"

#include "core/records/file.h"

FileColumns::FileColumns(const QStringList &columns)
    : m_columns(columns),
      // Looked up once for all rows: by name each value would cost a search among fifteen.
      m_fileId(find("file_id")),
      m_name(find("file_name")),
      m_description(find("file_description")),
      m_size(find("file_size")),
      m_additionDate(find("addition_date")),
      m_modificationDate(find("modification_date")),
      m_idCode(find("id_code")),
      m_loadId(find("load_id")),
      m_storageId(find("storage_id")),
      m_thumbnailId(find("thumbnail_id")),
      m_checksum(find("data_checksum")),
      m_internal(find("internal")),
      m_tagId(find("tag_id")),
      m_path(find("path")),
      m_relPath(find("rel_path"))
{
}

File *FileColumns::makeFile(const TableRowData &row) const
{
    return new File(fileId(row), number(row, m_size), number(row, m_additionDate),
                    number(row, m_modificationDate), number(row, m_loadId), text(row, m_name),
                    text(row, m_description), text(row, m_idCode), path(row, m_path), path(row, m_relPath),
                    number(row, m_storageId), number(row, m_thumbnailId), number(row, m_checksum),
                    internal(row));
}

bool FileColumns::update(File &file, const TableRowData &row) const
{
    bool changed = set(file, Name, text(row, m_name));
    changed = set(file, Description, text(row, m_description)) || changed;
    changed = set(file, Size, number(row, m_size)) || changed;
    if (file.modificationSeconds() != number(row, m_modificationDate)) {
        file.setData(ModificationDate, number(row, m_modificationDate));
        changed = true;
    }
    changed = set(file, Internal, internal(row)) || changed;
    changed = set(file, Path, path(row, m_path)) || changed;
    changed = set(file, RelPath, path(row, m_relPath)) || changed;
    changed = file.thumbnailId() != number(row, m_thumbnailId) || changed;
    file.setChecksumSilently(number(row, m_checksum));
    file.setStorageId(number(row, m_storageId));
    file.setThumbnailId(number(row, m_thumbnailId));
    // Last, as it goes by the name, the kind and the thumbnail.
    file.deriveType();
    return changed;
}

QString FileColumns::path(const TableRowData &row, int column) const
{
    // Only an external file has a path: the storage id of another kind is the key of another table.
    return internal(row) == 0 ? text(row, column) : QString();
}

bool FileColumns::set(File &file, DataType type, const QVariant &value)
{
    if (file.data(type) == value)
        return false;
    file.setData(type, value);
    return true;
}
