#pragma once

#include "core/records/nodetype.h"
#include "models/base/rowproxymodel.h"
#include "models/contents/fileselection.h"

#include <QVector>

#include <array>
#include <vector>

class ContentsModel;
class File;

/**
 * Shows of a ContentsModel the files that meet the selection. Each change of the selection or of the files
 * makes one pass over the index of all files, which gives the shown rows in the order of the source.
 *
 * The mapping is our own: that of the base class asks row by row and then sorts what is in order already,
 * which takes most of the time of a click at a million files; its invalidateFilter() is even quadratic. GUI
 * thread.
 */
class FileFilterModel : public RowProxyModel
{
    Q_OBJECT

public:
    explicit FileFilterModel(QObject *parent = nullptr);

    /** Takes a ContentsModel; with any other model nothing is shown. */
    void setSourceModel(QAbstractItemModel *sourceModel) override;

    /** Types 1 to 7; all tag requirements are emptied. */
    void setSpecialNode(NodeType type);
    void setTagRequirements(const TagRequirements &requirements);

    const TagRequirements &requirements() const { return m_selection.requirements(); }
    NodeType nodeType() const { return m_selection.nodeType(); }
    const QVector<qint64> &required() const { return m_selection.requirements().required; }
    const QVector<qint64> &eitherOr() const { return m_selection.requirements().eitherOr; }
    const QVector<qint64> &excluded() const { return m_selection.requirements().excluded; }
    /** The ids of all accepted files, in the order of the source. */
    const QVector<qint64> &acceptedFiles() const;
    /** How many of them are of each kind, as FileIndex::kinds() has them. */
    const std::array<int, 256> &kindCounts() const;
    /** The bytes of all of them. */
    qint64 acceptedSize() const;
    const QVector<qint64> &dTags() const { return m_selection.dTags(); }
    /** Whether the last pass has seen all files as they are now. */
    bool isUpToDate() const;
    /** Whether something is asked for that a file can fail to meet. */
    bool tellsFilesApart() const { return nodeType() != NodeType(0) && nodeType() != AllFiles; }
    /** How many of the shown files have the tag; 0 while they are not up to date. */
    int shownWith(qint64 tagId) const;

    /** The row of the ContentsModel behind a row here. */
    int contentsRow(int row) const { return m_rows[static_cast<size_t>(row)]; }
    /** The row here of a row of the ContentsModel, -1 when that is not shown. */
    int rowOfContents(int contentsRow) const;
    /** Whether a row of the ContentsModel is shown. */
    bool isShown(int contentsRow) const { return rowOfContents(contentsRow) >= 0; }
    /** Null outside the rows. */
    const File *fileAt(int row) const;
    const ContentsModel *contents() const { return m_contents; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex mapToSource(const QModelIndex &proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex &sourceIndex) const override;
    /** Does nothing: files are sorted by the Sorter above. */
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

signals:
    /** The tags on some but not all shown files; once, when a change is through. */
    void dTagsChanged(QVector<qint64> tagIds);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    void connectContents();
    void sourceDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                           const QVector<int> &roles);
    void sourceRowsInserted();
    void sourceRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last);
    void sourceRowsRemoved(const QModelIndex &parent, int first, int last);
    void sourceLayoutChanged();
    void sourceReset();

    void applySelection();
    void runSelection();
    void showChanges();
    void showChangesInOneGo();
    void showNewRows();
    void announceDTags();
    void forgetAcceptedFiles();
    /** The place of the first shown row that is not before a row of the ContentsModel. */
    int placeOf(int contentsRow) const;

    ContentsModel *m_contents = nullptr;
    FileSelection m_selection;
    // The shown rows of the ContentsModel, ascending, and those of the last pass until they are shown.
    std::vector<int> m_rows;
    std::vector<int> m_newRows;
    quint64 m_seenRevision = 0;
    QVector<qint64> m_announcedDTags;
    mutable QVector<qint64> m_acceptedFiles;
    mutable bool m_areAcceptedFilesKnown = false;
    mutable std::array<int, 256> m_kindCounts{};
    mutable bool m_areKindsKnown = false;
    mutable qint64 m_size = 0;
    mutable quint64 m_kindsRevision = 0;      // of the index, when they were counted
    mutable std::vector<quint32> m_tagCounts; // by number; empty until somebody asks
    bool m_isRemoving = false;                // between the two signals of a removal below
};
