#pragma once

#include "ui/views/fileactions.h"

#include <QVector>

class File;
class QItemSelectionModel;
class Sorter;

/** What selected files have in common. */
struct SharedFacts
{
    int count = 0;
    QVector<qint64> tagIds; ///< that each of them has
    int kind = -1;          ///< -1 where they are of different ones
};

/**
 * Reads the selection of a file view, of which rows are selected whole. Made for one use: the records that it
 * hands out are borrowed from the cache.
 */
class SelectedFiles
{
public:
    /** Null for either is an empty selection. */
    SelectedFiles(const QItemSelectionModel *selection, const Sorter *sorter)
        : m_selection(selection), m_sorter(sorter)
    {
    }

    bool isEmpty() const;
    int count() const;
    /** In bytes. */
    qint64 size() const;
    bool intersectsRows(int first, int last) const;
    /** Null without a selection. */
    const File *first() const;
    QVector<const File *> all() const;
    QVector<qint64> ids() const;
    /** Without the records, as there may be a million; ends at the row from which on nothing is shared. */
    SharedFacts shared() const;
    bool areAllInternal() const;
    bool hasHyperlink() const;
    /** Missing are the files that are not in their places; none are given where that does not matter. */
    SelectedFilesFacts facts(const QVector<qint64> &missing = {}) const;

private:
    /** Calls use(row) row by row until it gives false. */
    template <typename Use>
    void forEachRow(Use use) const;
    /** False without a selection. */
    template <typename Predicate>
    bool hasKind(Predicate isWanted) const;

    const QItemSelectionModel *m_selection;
    const Sorter *m_sorter;
};
