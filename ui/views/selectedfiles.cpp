#include "ui/views/selectedfiles.h"

#include "core/file.h"
#include "core/filekind.h"
#include "models/filepictures.h"
#include "models/sorter.h"

#include <QItemSelectionModel>
#include <QSet>

#include <algorithm>

bool SelectedFiles::isEmpty() const
{
    return !m_selection || !m_sorter || !m_selection->hasSelection();
}

int SelectedFiles::count() const
{
    if (isEmpty())
        return 0;
    int count = 0;
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange &range : ranges)
        count += range.height();
    return count;
}

bool SelectedFiles::intersectsRows(int first, int last) const
{
    if (isEmpty())
        return false;
    const QItemSelection ranges = m_selection->selection();
    return std::any_of(ranges.begin(), ranges.end(), [first, last](const QItemSelectionRange &range) {
        return range.top() <= last && range.bottom() >= first;
    });
}

const File *SelectedFiles::first() const
{
    if (isEmpty())
        return nullptr;
    const QItemSelection ranges = m_selection->selection();
    return ranges.isEmpty() ? nullptr : m_sorter->fileAt(ranges.first().top());
}

QVector<const File *> SelectedFiles::all() const
{
    QVector<const File *> files;
    if (isEmpty())
        return files;
    files.reserve(count());
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (const File *file = m_sorter->fileAt(row))
                files.append(file);
        }
    }
    return files;
}

QVector<qint64> SelectedFiles::ids() const
{
    const QVector<const File *> files = all();
    QVector<qint64> ids;
    ids.reserve(files.size());
    for (const File *file : files) {
        if (file->id() > 0)
            ids.append(file->id());
    }
    return ids;
}

template <typename Predicate>
bool SelectedFiles::hasFile(Predicate isWanted) const
{
    if (isEmpty())
        return false;
    const QItemSelection ranges = m_selection->selection();
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            const File *file = m_sorter->fileAt(row);
            if (file && isWanted(*file))
                return true;
        }
    }
    return false;
}

bool SelectedFiles::areAllInternal() const
{
    return !isEmpty() && !hasFile([](const File &file) { return file.internal() != FileKind::internal; });
}

bool SelectedFiles::hasHyperlink() const
{
    return hasFile([](const File &file) { return file.internal() == FileKind::hyperlink; });
}

SelectedFilesFacts SelectedFiles::facts(const QVector<qint64> &missing) const
{
    const QSet<qint64> missingIds(missing.begin(), missing.end());
    const QVector<const File *> files = all();
    SelectedFilesFacts facts;
    if (files.isEmpty())
        return facts;
    facts.count = files.size();
    facts.isPicture = files.first()->iconKind() == FilePictures::thumbnailKind;
    facts.areAllInternal = true;
    facts.areAllExternal = true;
    for (const File *file : files) {
        facts.areAllInternal = facts.areAllInternal && file->internal() == FileKind::internal;
        facts.areAllExternal = facts.areAllExternal && file->internal() == FileKind::external;
        facts.hasHyperlink = facts.hasHyperlink || file->internal() == FileKind::hyperlink;
        facts.hasMissing = facts.hasMissing || missingIds.contains(file->id());
    }
    return facts;
}
