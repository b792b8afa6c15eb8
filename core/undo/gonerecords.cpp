#include "core/undo/gonerecords.h"

#include "core/records/file.h"
#include "db/manager/databasemanger.h"

#include <algorithm>
#include <utility>

GoneRecords::GoneRecords(DatabaseManger *manager, const FileIds &namedFiles, QObject *parent)
    : QObject(parent), m_manager(manager), m_namedFiles(namedFiles)
{
    using Manager = DatabaseManger;
    connect(manager, &Manager::filesRemoved, this,
            [this](const QVector<qint64> &ids) { mark(m_files, ids); });
    connect(manager, &Manager::tagsRemoved, this, [this](const QVector<qint64> &ids) {
        // Whether the edit is a step, which brings them back under their ids, is known at its end.
        if (m_isEditing)
            m_tagsOfEdit += ids;
        else
            mark(m_tags, ids);
    });
    // Of others, under an id that a step has set free.
    connect(manager, &Manager::tagsAdded, this, [this](const TableData &rows) {
        for (const TableRowData *row : rows) {
            if (!m_isEditing)
                mark(m_tags, {row->value(QStringLiteral("tag_id")).toLongLong()});
        }
    });
    connect(manager, &Manager::aboutToReloadAllData, this, &GoneRecords::noteAll);
    connect(manager, &Manager::allDataReloaded, this, &GoneRecords::compareAll);
}

void GoneRecords::clear()
{
    m_lastStep = 0;
    m_files.clear();
    m_tags.clear();
}

void GoneRecords::mark(Marks &marks, const QVector<qint64> &ids)
{
    if (m_lastStep == 0)
        return;
    for (const qint64 id : ids)
        marks.insert(id, m_lastStep);
}

void GoneRecords::editBegins()
{
    m_isEditing = true;
    m_tagsOfEdit.clear();
}

void GoneRecords::editEnded(bool isStep)
{
    m_isEditing = false;
    if (!isStep)
        mark(m_tags, m_tagsOfEdit);
    m_tagsOfEdit.clear();
}

GoneRecords::Identities GoneRecords::files() const
{
    Identities ids;
    // Of a million files those alone that steps speak of.
    const QSet<qint64> named = m_namedFiles();
    for (const qint64 id : named) {
        if (const File *file = m_manager->file(id))
            ids.insert(id, file->idCode());
    }
    return ids;
}

GoneRecords::Identities GoneRecords::tags() const
{
    Identities ids;
    for (const TableRowData *row : m_manager->tags())
        ids.insert(row->value(QStringLiteral("tag_id")).toLongLong(),
                   row->value(QStringLiteral("creation_date")).toString());
    return ids;
}

void GoneRecords::noteAll()
{
    if (m_lastStep == 0)
        return;
    m_filesBefore = files();
    m_tagsBefore = tags();
}

void GoneRecords::compareAll()
{
    // An id with another code or date is another record, which only got the number of the one of before.
    const auto compare = [this](Marks &marks, Identities &&before, const Identities &now) {
        for (auto record = before.cbegin(); record != before.cend(); ++record) {
            if (now.value(record.key()) != record.value())
                mark(marks, {record.key()});
        }
    };
    if (!m_filesBefore.isEmpty())
        compare(m_files, std::exchange(m_filesBefore, {}), files());
    if (!m_tagsBefore.isEmpty())
        compare(m_tags, std::exchange(m_tagsBefore, {}), tags());
}

EditStep GoneRecords::living(const EditStep &step, qint64 number, int &lostFiles, int &lostTags) const
{
    if (m_files.isEmpty() && m_tags.isEmpty())
        return step;
    QSet<qint64> files;
    QSet<qint64> tags;
    const auto isGone = [number](const Marks &marks, qint64 id, QSet<qint64> &lost) {
        const bool gone = marks.value(id, -1) >= number;
        if (gone)
            lost.insert(id);
        return gone;
    };
    EditStep rest = step;
    for (ChangeSet &edit : rest.edits) {
        QVector<TagLinks> links;
        for (TagLinks &link : edit.links) {
            if (isGone(m_tags, link.tagId, tags))
                continue;
            const auto isLost = [&](qint64 id) { return isGone(m_files, id, files); };
            link.fileIds.erase(std::remove_if(link.fileIds.begin(), link.fileIds.end(), isLost),
                               link.fileIds.end());
            links.append(link);
        }
        edit.links = links;
        const auto isLost = [&](const RowChange &row) {
            const bool isOfTag = row.table == UndoTable::Tags || row.table == UndoTable::GroupLinks ||
                                 row.table == UndoTable::Nodes;
            return (isOfTag && isGone(m_tags, row.id(QStringLiteral("tag_id")), tags)) ||
                   (row.table == UndoTable::Files &&
                    isGone(m_files, row.id(QStringLiteral("file_id")), files));
        };
        edit.rows.erase(std::remove_if(edit.rows.begin(), edit.rows.end(), isLost), edit.rows.end());
    }
    lostFiles = files.size();
    lostTags = tags.size();
    return rest;
}
