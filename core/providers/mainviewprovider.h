#pragma once

#include "core/providers/pathchange.h"
#include "core/tagging/tagchange.h"
#include "db/sql/basedbprovider.h"

/**
 * The statements of the file records. GUI thread, default connection; each operation is over, and its signals
 * out, when it returns.
 *
 * Rows come one for each pair of file and tag; a row that follows another one of its file carries file_id and
 * tag_id only, its other values are invalid. The rows of both signals are lent: they live until the receiver
 * returns and are filled anew after that, so it copies what it needs and frees nothing.
 */
class MainViewProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit MainViewProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /**
     * Streams all files in slices through gotAllFilesInfo; the rows of one file may stand in two slices, and
     * a receiver runs no statement until the end. That is an empty slice: with true when all files were
     * handed on, with false when the reading failed.
     */
    void loadAllFiles();

    // For who reads all files on a connection of its own.
    QString allFilesText() const { return filesText(QString()); }
    QString allTagsText() const { return tagsText(QString()); }
    /** Of a server: both in one, a row a file, in an order of columns that is known beforehand. */
    QString copyText() const;
    /** The highest id of a file, 0 without one. */
    qint64 highestId();

    /**
     * Emits filesUpdated once for each piece of some thousand files. All rows of a file stand in one piece,
     * so that each piece is a whole answer for its files. Ids without a file have no rows; a failure ends
     * with false and an empty table.
     */
    void loadFiles(const QVector<qint64> &ids);

    /** Reads the rows of some files; the holder of `rows` owns them, also after a failure. */
    bool readFiles(const QVector<qint64> &ids, TableData &rows);
    /** Appends the external files that have one of these paths. */
    bool readFilesOfPaths(const QVector<qint64> &pathIds, QVector<qint64> &ids);

    /** Writes one column of "files" and loads the file again; false on failure. */
    bool updateFile(qint64 id, const QString &column, const QString &value);
    /** The same for a column of "file_paths"; the file must be an external one. */
    bool updateFilePath(qint64 id, const QString &column, const QString &value);
    /** The same for many files: in one transaction, and with one reload. */
    bool changePaths(const PathChanges &changes);

    /** Writes name and both paths of an external file, all or nothing, and loads the file again. */
    bool renameFile(qint64 id, const QString &name, const QString &path, const QString &relPath);

    /** All or nothing; tagsChanged() tells what was really changed, and nothing is read. */
    bool changeTags(const TagChanges &changes);
    bool linkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);
    bool unlinkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);

signals:
    void gotAllFilesInfo(bool ok, const TableData &table);
    void filesUpdated(bool ok, const TableData &table);
    void filesAdded(bool ok, const TableData &table);
    void filesRemoved(bool ok, const TableData &table);
    void tagsChanged(const TagChanges &done);
    /** How much of all files has been handed on, while they are. A receiver runs no statement. */
    void loadingProgress(int percent);

protected:
    /** All columns of the files and of the external ones' paths, file_id first, in its order. */
    QString filesText(const QString &condition) const;
    /** The tags of the files, in the same order. */
    QString tagsText(const QString &condition) const;

private:
    /** Their new rows, when the edit is through. */
    void announceFiles(const QVector<qint64> &ids);
    QString fewFilesText(const QVector<qint64> &ids) const;
    QString highestIdText() const;
    QString updateText(qint64 id, const QString &column, const QString &value) const;
    QString updatePathText(qint64 id, const QStringList &columns, const QStringList &values) const;
    bool updateAndLoad(qint64 id, const QString &update);
};
