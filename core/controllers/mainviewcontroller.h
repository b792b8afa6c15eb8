#pragma once

#include "core/controllers/abstractcontroller.h"
#include "core/controllers/fileconflict.h"
#include "core/controllers/shownfilescheck.h"
#include "core/records/datatype.h"
#include "core/records/nodetype.h"
#include "core/records/recordtypes.h"
#include "fileops/pictures/storedimage.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "models/contents/contentshost.h"
#include "models/contents/tagrequirements.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QVector>

#include <memory>

class BrowsTreeController;
class ContentsModel;
class File;
class FileFilterModel;
class FolderExtraction;
class ImageLoading;
class Narrowing;
class RelationsController;
class Sorter;
class TagsController;
struct ExportRequest;
struct ImportOptions;

/**
 * The files of the main view: what is shown, and every edit of a file. It owns the table of all files with
 * the filter and the sorter above it. A selection of a node or of tags and a search text exclude each other.
 * GUI thread.
 */
class MainViewController : public AbstractController, private ContentsHost
{
    Q_OBJECT

public:
    MainViewController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                       Collection *collection);
    ~MainViewController() override;

    void setPeers(TagsController *tags, BrowsTreeController *browsTree, RelationsController *relations);
    void load() override;
    /** Shows the recently added files by another time-out. */
    void readSettings();

    /** Types 1 to 7. */
    void showSpecialNode(NodeType type);
    void showTagRequirements(const QVector<qint64> &required, const QVector<qint64> &eitherOr,
                             const QVector<qint64> &excluded,
                             const QHash<qint64, QVector<qint64>> &requiredAlternatives,
                             const QVector<qint64> &eitherOrWidened, const QVector<qint64> &excludedWidened);
    /** Shows all files that the text is found in; an empty text shows all files. */
    void setFileFilterString(const QString &text);
    /** Shows the files with all of the tags, or with one of them; a tag below counts for the tag. */
    void showTagsSelected(const QVector<qint64> &tagIds);
    void showTagsEitherOr(const QVector<qint64> &tagIds);
    /** Shows the files with all the tags of the first of these files. */
    void showRelated(const QVector<qint64> &fileIds);
    /** Changes what is asked for tag by tag. */
    Narrowing *narrowing() const { return m_narrowing; }
    /** Those of showTagsEitherOr(). */
    TagRequirements requirementsOfAny(const QVector<qint64> &tagIds) const;
    /** The files that meet the requirements, whatever the search text. */
    QVector<qint64> shownFileIds() const;
    /** Those of the shown files whose external file was not there at the last look. */
    QVector<qint64> missingFileIds() const { return m_check->missingFileIds(); }
    bool hasMissingFiles() const { return m_check->hasMissingFiles(); }

    /** Adds local files and folders as such, all other URLs as hyperlinks. */
    void addUrls(const QList<QUrl> &urls, const QVector<qint64> &tagIds = {}, bool fromSelectedNode = false,
                 qint64 nodeId = 0);
    /**
     * Adds a hyperlink, its text as it stands. False when that was refused, and the user knows why; else
     * additionSettled() tells what became of it.
     */
    bool addHyperlink(const QString &text, const QString &description, const QVector<qint64> &tagIds = {});
    /**
     * Adds files as they are: no look into folders, no look for duplicates, no tags. False when that was
     * refused, and the user knows why; else additionSettled() tells what became of it, if there are any.
     */
    bool addFilesList(const QStringList &paths);
    /** Missing files were found in other places: file ids to paths. */
    void locateFiles(const QHash<qint64, QString> &paths);
    /** Deletes files from the database; external ones stay on the disk. */
    void deleteFiles(const QVector<qint64> &fileIds);
    /** One that is in its place again by then stays. */
    void deleteMissingFiles(const QVector<qint64> &fileIds);
    /** Copies the external ones of these files into the database; on the disk they stay as they are. */
    void transferToInternal(const QVector<qint64> &fileIds);
    /**
     * Copies files into a folder. Hyperlinks and what is there already are passed over; about a different
     * file of the same name the user is asked, about several ones by the asker. An empty folder does nothing.
     */
    void extractFiles(const QString &folder, const QVector<qint64> &fileIds);
    /** Without one, an extraction that meets several conflicts ends there. */
    void setFileConflictAsker(const FileConflictAsker &asker);
    /** Opens an internal file with the program that the system has for it, in a copy for the purpose. */
    void openTemporaryCopy(qint64 fileId);
    /** Writes a part of a local database to a file; when none can be made there, the user knows why. */
    void exportDatabase(const ExportRequest &request);
    /** The cache of thumbnails holds at least so many, however small the user wants it. */
    void keepThumbnails(int count);
    /** Makes the thumbnails of all external files anew. */
    void remakeThumbnails();
    void cancelOperations();
    /** Merges another local database, or a shell, which has metadata alone, into the open one. */
    void importDatabase(const QString &source, bool isShell, const ImportOptions &options);

    /** Links and unlinks in one step; false when it was refused and nothing has changed. */
    bool changeTags(const QVector<qint64> &fileIds, const QVector<qint64> &linked,
                    const QVector<qint64> &unlinked);
    void linkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);
    void unlinkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);
    bool updateFileDescription(qint64 fileId, const QString &text);
    /** The picture of a file in its whole size. */
    std::unique_ptr<ImageLoading> loadImage(qint64 fileId);
    /**
     * Puts a turned picture, which was loaded before, in the place of what is stored: the contents, the
     * thumbnail and the record. When it is Refused the user has been told, when it is NotSaved not yet.
     */
    StoredImage::Saving saveImage(qint64 fileId, const QImage &picture);
    void reloadThumbnail(qint64 fileId);
    /** Between the two, which count, no check of the shown files begins. */
    void pauseChecking() { m_check->pause(); }
    void resumeChecking() { m_check->resume(); }
    /** Finds an external file anew if need be, and looks whether it is in its place. */
    void checkPresence(qint64 fileId) { m_check->look(fileId); }
    /** These tags are gone; a selection that asks for one of them goes on without it. */
    void forgetTags(const QVector<qint64> &removedTags);

    /** Invalid for an unknown file. */
    QVariant fileData(qint64 fileId, DataType type) const;
    /** The names in the order of the ids, joined by ", ". */
    QString tagNames(const QVector<qint64> &tagIds) const;

    ContentsModel *contentsModel() const { return m_contents; }
    FileFilterModel *filterModel() const { return m_filter; }
    /** What views show. */
    Sorter *sorter() const { return m_sorter; }

signals:
    /** Type, required, eitherOr, excluded. */
    void tagRequirementsChanged(NodeType type, QVector<qint64> required, QVector<qint64> eitherOr,
                                QVector<qint64> excluded);
    void startedAddingFiles(QString label);
    void addingFilesProgress(QString text, int percent);
    void finishedAddingFiles();
    /** What became of addHyperlink() or addFilesList(), by the texts. */
    void additionSettled(QStringList texts, bool areStored);
    void filesModified(QVector<qint64> fileIds, DeletedFileRepresentations deletedFiles);
    /** The list of missing files may be another one. */
    void missingFilesChanged();

public slots:
    void loadedFilesDataFromDB(const Map<qint64, File *> &files);
    /** Opens each of the extracted files with the program that the system has for it. */
    void gotExtractedTempFiles(const QVector<QPair<qint64, QString>> &files);

private:
    QString joinedTagNames(const QVector<qint64> &tagIds) const override;
    bool isFileMissing(qint64 fileId) const override;
    const QImage *thumbnailOf(qint64 fileId) const override;
    QMimeData *dragData(const QVector<const File *> &files) const override;
    bool renameFile(qint64 fileId, const QString &name) override;
    bool describeFile(qint64 fileId, const QString &description) override;
    bool linkTagsToFile(qint64 fileId, const QVector<qint64> &tagIds) override;

    void connectManager();
    /** The same with those that a reload did not bring back. */
    void forgetGoneTags();
    void showRequirements(const TagRequirements &requirements);

    TagsController *m_tags = nullptr;
    BrowsTreeController *m_browsTree = nullptr;
    RelationsController *m_relations = nullptr;
    ContentsModel *m_contents;
    FileFilterModel *m_filter;
    Sorter *m_sorter;
    FolderExtraction *m_extraction;
    ShownFilesCheck *m_check;
    Narrowing *m_narrowing;
    int m_awaitedCopies = 0;
};
