#include "ui/views/selectedfiles.h"

#include "core/records/file.h"
#include "core/records/filekind.h"
#include "models/contents/filepictures.h"
#include "models/contents/sorter.h"

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

qint64 SelectedFiles::size() const
{
    if (isEmpty())
        return 0;
    const int rows = m_sorter->rowCount();
    const bool areMost = count() > rows / 2;
    QVector<QPair<int, int>> ranges;
    const QItemSelection selection = m_selection->selection();
    for (const QItemSelectionRange &range : selection)
        ranges.append({range.top(), qMin(range.bottom(), rows - 1)});
    // Each look at a file in another order than that of the index leaves the processor's cache: of most of
    // the files the others are taken off the sum of all, which is known.
    std::sort(ranges.begin(), ranges.end());
    qint64 size = areMost ? m_sorter->sizeOf(0, rows - 1) : 0;
    int next = 0;
    for (const QPair<int, int> &range : qAsConst(ranges)) {
        if (areMost)
            size -= m_sorter->sizeOf(next, range.first - 1);
        else
            size += m_sorter->sizeOf(range.first, range.second);
        next = range.second + 1;
    }
    return areMost && next < rows ? size - m_sorter->sizeOf(next, rows - 1) : size;
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

template <typename Use>
void SelectedFiles::forEachRow(Use use) const
{
    if (isEmpty())
        return;
    const QItemSelection ranges = m_selection->selection();
    const int last = m_sorter->rowCount() - 1;
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= qMin(range.bottom(), last); ++row) {
            if (!use(row))
                return;
        }
    }
}

QVector<qint64> SelectedFiles::ids() const
{
    QVector<qint64> ids;
    ids.reserve(count());
    forEachRow([&](int row) {
        const qint64 id = m_sorter->idAt(row);
        if (id > 0)
            ids.append(id);
        return true;
    });
    return ids;
}

SharedFacts SelectedFiles::shared() const
{
    SharedFacts shared;
    const File *firstFile = first();
    if (!firstFile)
        return shared;
    shared.count = count();
    shared.tagIds = firstFile->tags();
    shared.kind = firstFile->internal();
    forEachRow([&](int row) {
        if (!shared.tagIds.isEmpty())
            m_sorter->keepTagsOf(row, shared.tagIds);
        if (shared.kind != m_sorter->kindAt(row))
            shared.kind = -1;
        return !shared.tagIds.isEmpty() || shared.kind >= 0;
    });
    return shared;
}

template <typename Predicate>
bool SelectedFiles::hasKind(Predicate isWanted) const
{
    if (isEmpty())
        return false;
    const QItemSelection ranges = m_selection->selection();
    const int last = m_sorter->rowCount() - 1;
    return std::any_of(ranges.begin(), ranges.end(), [&](const QItemSelectionRange &range) {
        return m_sorter->hasKind(isWanted, range.top(), qMin(range.bottom(), last));
    });
}

bool SelectedFiles::areAllInternal() const
{
    return !isEmpty() && !hasKind([](int kind) { return kind != FileKind::internal; });
}

bool SelectedFiles::hasHyperlink() const
{
    return hasKind([](int kind) { return kind == FileKind::hyperlink; });
}

SelectedFilesFacts SelectedFiles::facts(const QVector<qint64> &missing) const
{
    const QSet<qint64> missingIds(missing.begin(), missing.end());
    SelectedFilesFacts facts;
    const File *firstFile = first();
    if (!firstFile)
        return facts;
    facts.isPicture = firstFile->iconKind() == FilePictures::thumbnailKind;
    facts.areAllInternal = true;
    facts.areAllExternal = true;
    forEachRow([&](int row) {
        const int kind = m_sorter->kindAt(row);
        ++facts.count;
        facts.areAllInternal = facts.areAllInternal && kind == FileKind::internal;
        facts.areAllExternal = facts.areAllExternal && kind == FileKind::external;
        facts.hasHyperlink = facts.hasHyperlink || kind == FileKind::hyperlink;
        facts.hasMissing =
            facts.hasMissing || (!missingIds.isEmpty() && missingIds.contains(m_sorter->idAt(row)));
        return true;
    });
    return facts;
}
