#pragma once

#include "core/nodetype.h"
#include "models/fileselection.h"

#include <QSortFilterProxyModel>
#include <QVector>

class ContentsModel;
class File;

/**
 * Shows of a ContentsModel the files that meet the selection. A change of the selection or of the files makes
 * one pass over the index of all files, before Qt asks row by row, so that each answer is the reading of a
 * bit. Never calls invalidateFilter(), which is quadratic. GUI thread.
 */
class FileFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit FileFilterModel(QObject *parent = nullptr);

    /** Takes a ContentsModel; with any other model nothing is shown. */
    void setSourceModel(QAbstractItemModel *sourceModel) override;

    /** Types 1 to 7; all tag requirements are emptied. */
    void setSpecialNode(NodeType type);
    void setTagRequirements(const TagRequirements &requirements);

    /** Whether a row of the ContentsModel meets the selection. */
    bool isShown(int contentsRow) const { return m_selection.isAccepted(contentsRow); }
    const TagRequirements &requirements() const { return m_selection.requirements(); }
    NodeType nodeType() const { return m_selection.nodeType(); }
    const QVector<qint64> &required() const { return m_selection.requirements().required; }
    const QVector<qint64> &eitherOr() const { return m_selection.requirements().eitherOr; }
    const QVector<qint64> &excluded() const { return m_selection.requirements().excluded; }
    /** The ids of all accepted files, in the order of the source. */
    const QVector<qint64> &acceptedFiles() const;
    const QVector<qint64> &dTags() const { return m_selection.dTags(); }

    /** The row of the ContentsModel behind a row here. */
    int contentsRow(int row) const { return mapToSource(index(row, 0)).row(); }
    /** Null outside the rows. */
    const File *fileAt(int row) const;
    const ContentsModel *contents() const { return m_contents; }

signals:
    /** The tags on some but not all shown files; once, when a change is through. */
    void dTagsChanged(QVector<qint64> tagIds);
    /**
     * Records in these rows of the ContentsModel have other values, shown here or not; -1 and -1 when any may
     * have, or stand in another row. Comes before the signals of the model itself.
     */
    void recordsChanged(int firstRow, int lastRow);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    void applySelection();
    void runSelection();
    void followContents();
    void followRecords(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QVector<int> &roles);
    void followRows();
    void announceDTags();

    ContentsModel *m_contents = nullptr;
    FileSelection m_selection;
    quint64 m_seenRevision = 0;
    QVector<qint64> m_announcedDTags;
    mutable QVector<qint64> m_acceptedFiles;
    mutable bool m_areAcceptedFilesKnown = false;
};
