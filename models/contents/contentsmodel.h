#pragma once

#include "core/records/recordtypes.h"
#include "models/contents/fileindex.h"
#include "models/contents/filepictures.h"
#include "models/contents/rowmarks.h"
#include "models/contents/searchtexts.h"

#include <QAbstractTableModel>
#include <QBasicTimer>
#include <QVector>

class ContentsHost;

/**
 * The table of all files of the open database, a row a record in the order of arrival. The records stay with
 * the cache of the manager; this model and the proxies above it only borrow them. GUI thread.
 *
 * A few rows come, go and change by the signals that every model has. Many of them at once go as one change
 * of layout: proxies look at every row once instead of once a signal, and persistent indexes are led to their
 * new rows, so that views keep selection, current row and scroll position, which a reset would take away.
 */
class ContentsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int {
        ThumbnailColumn,
        NameColumn,
        ModificationDateColumn,
        SizeColumn,
        AdditionDateColumn,
        TypeColumn,
        TagsColumn,
        DescriptionColumn,
        IdCodeColumn,
        LoadIdColumn,
        columnTotal ///< their number
    };
    /** The pixels that a name below its picture has. */
    /** The translated header of a column that there is. */
    static QString columnTitle(int column);
    static constexpr int elidedWidth = 200;

    explicit ContentsModel(QObject *parent = nullptr);
    ~ContentsModel() override;

    /** Borrowed; without one the model shows records and refuses edits. */
    void setHost(ContentsHost *host) { m_host = host; }

    /** The whole text of these tags, which a view may show in part. */
    QString tagNames(const QVector<qint64> &tagIds) const;
    /** Null outside the rows. */
    const File *fileAt(int row) const;
    int rowOf(qint64 fileId) const { return m_index.rowOf(fileId); }
    const FileIndex &fileIndex() const { return m_index; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /** The same for rows, as a proxy has them; a row that comes twice counts once. Null for none. */
    QMimeData *dragData(const QVector<int> &rows) const;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /** What a search looks at, of all rows. */
    const SearchTexts &searchTexts() const;
    /** A search may come soon: gets that ready, a little at a time. */
    void prepareSearch();

public slots:
    /** Some files, by rising ids, that loadFiles() will bring; an empty list begins anew. */
    void prepareFiles(const QVector<File *> &files);
    /** Takes the place of all rows. */
    void loadFiles(const FileMap &files);
    void clear();
    /** Files that have a row already count as changed. */
    void addFiles(const FileMap &files);
    /** The records may be gone already. */
    void removeFiles(const QVector<qint64> &fileIds);
    /** Values or tags of these records differ from what was last seen. */
    void updateFiles(const QVector<qint64> &fileIds);
    /** Nothing but the tags of these records differs; showTags() follows when that is so of no more of them.
     */
    void updateTags(const QVector<qint64> &fileIds);
    void showTags();
    /** Only the pictures of these files differ. */
    void repaintFiles(const QVector<qint64> &fileIds);
    void repaintFile(qint64 fileId);
    void repaintAll();

signals:
    /** Records in these rows, ascending, have other values. Comes before the signals of the model itself. */
    void recordsChanged(const QVector<int> &rows);
    /** The same of records that have other tags, and nothing else. */
    void tagsChanged(const QVector<int> &rows);
    /** These rows, ascending, are gone and later ones have moved up; comes before the model's own signal. */
    void recordsErased(const QVector<int> &rows);
    /** Follows, once, whatever one of the slots above has announced; proxies are settled by then. */
    void contentsChanged();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QVariant decoration(const File &file) const;
    QVariant editText(const File &file, int column) const;
    QVariant fileRole(const File &file, int role) const;
    QVariant thumbnailColumnRole(const File &file, int role) const;

    bool isWorthOneLayoutChange(const QVector<int> &rows) const;
    void appendRow(File *file);
    void appendRows(const QVector<File *> &files);
    void eraseRows(const QVector<int> &rows);
    void removeInOneGo(const QVector<int> &rows);
    void emitRowsChanged(const QVector<int> &rows, int firstColumn, int lastColumn);
    void emitPicturesChanged(int first, int last);

    ContentsHost *m_host = nullptr;
    QVector<File *> m_files;
    FileIndex m_index;
    QVector<File *> m_coming; // prepared, and not shown yet
    FileIndex m_comingIndex;
    mutable SearchTexts m_searchTexts; // of the first rows, until all are needed
    QBasicTimer m_nextSearchTexts;
    RowMarks m_retagged; // those that nobody was told of
    mutable FilePictures m_pictures;
};
