#pragma once

#include "ui/views/filecommands.h"
#include "ui/views/filesearch.h"

#include <QAbstractItemView>
#include <QModelIndex>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <functional>
#include <memory>

class ExportMenu;
class File;
class FileActions;
class FileDrops;
class FileSorting;
class FileTagging;
class FileViews;
class KeptSelection;
class MainUi;
class MainViewController;
class Previews;
class QItemSelection;
class QItemSelectionModel;
class QKeyEvent;
class ThumbnailSize;
class TitleWidget;

/**
 * The centre of the window: the files of the present selection as thumbnails or as a table, and the commands
 * on them. Both views share one model and one selection. Holds no data: gestures become calls on the
 * controller. GUI thread.
 */
class MainFilesView : public QWidget
{
    Q_OBJECT

public:
    explicit MainFilesView(QWidget *parent = nullptr);
    /** Stores the state of the table's header when a database is open. */
    ~MainFilesView() override;

    /** Fills the menu and the bars that belong to files. Once, while the window is set up. */
    void takePlaces(MainUi &ui);

    /** Borrowed; null, before the database closes, empties and disables the view. */
    void setController(MainViewController *controller);

    /** The previewer that keeps what it could not save; the user knows, and the database has to stay. */
    QWidget *savePreviews();
    /** They save what they have to save; the database must still be whole. */
    void closePreviews();
    /** Lets the previewers take over what the user has just set. */
    void readSettings();

    /** For one use: it borrows the records. */
    SelectedFiles selectedFiles() const;

signals:
    /** The first of the files that have been selected; 0 when none is any more. */
    void fileSelected(qlonglong fileId);
    void statusTextChanged(QString text);
    /** How many files are selected, or shown where none is, and how large they are; empty without any. */
    void sizesChanged(QString text);

public slots:
    void updateActionsAvailability();
    void iconViewSelected(bool on);
    void openContextMenu(const QPoint &pos);
    void openFileExternally() { openFile(currentView()->currentIndex(), true); }
    /** The flag bypasses the program's own viewer. */
    void openFile(const QModelIndex &index, bool forceExternal);
    void openFile(const QModelIndex &index) { openFile(index, false); }
    void openFileTagsEditor() { m_commands->editTags(); }
    void openBrowsTagsEditor() { m_commands->editTagsByTree(); }
    void openFileManager() { m_commands->showInFileManager(); }
    void deleteSelectedItems() { m_commands->deleteFiles(); }
    void deleteSelectedItemsFromNode() { m_commands->removeFromNode(); }
    void showFileProperties() { m_commands->showProperties(); }
    void showRelatedFiles() { m_commands->showRelated(); }
    void searchFile() { m_search->search(); }
    /** The tags stand in the data of the action. */
    void linkTagsToFiles();
    void fileDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight);
    void fileSelectionChanged(const QItemSelection &selected);
    void addFiles() { m_commands->addFiles(); }
    void addHyperlinks() { m_commands->addHyperlinks(); }
    /** Asks for a folder and copies the selected files into it. */
    void extractFiles() { m_commands->extract(); }
    void extractFilesInFolder(const QString &folder, const QVector<qint64> &fileIds)
    {
        m_commands->extractTo(folder, fileIds);
    }
    /** Makes the selected external files internal. */
    void transferToInternal() { m_commands->transferToInternal(); }
    /** Makes the thumbnails of all external files anew, whatever is selected. */
    void remakeThumbnails() { m_commands->remakeThumbnails(); }
    void notifyOfUpdatedFiles(const QVector<qint64> &fileIds, const DeletedFileRepresentations &deletedFiles)
    {
        m_commands->notifyOfUpdatedFiles(fileIds, deletedFiles);
    }
    void locateMissingFiles() { m_commands->locateMissingFiles(); }
    void changeEditMode(bool on);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectViews();
    void connectActions();
    void detachModel();
    void connectModel();

    QAbstractItemView *currentView() const;
    QItemSelectionModel *selection() const;
    bool isWritable() const;
    /** Null outside the rows. */
    const File *fileAt(const QModelIndex &index) const;
    void updateStatusText();
    void tellSizes(int selected, int total);
    void updateEmptyText();
    void followRequirements();
    void followSearch();
    void applyEditTriggers();
    void openOrEdit(const QModelIndex &index);
    void moveToFile(qint64 fileId);
    std::function<void()> nextFile();
    void tellLostSelection();
    void keepSelection();
    void restoreSelection();

    bool handleKey(QKeyEvent *event);

    TitleWidget *m_title;
    FileViews *m_views;
    FileActions *m_actions;
    ExportMenu *m_exports;
    Previews *m_previews;
    FileCommands *m_commands;
    FileSearch *m_search;
    FileSorting *m_sorting;
    ThumbnailSize *m_thumbnailSize;
    FileDrops *m_drops;
    FileTagging *m_tagging;
    std::unique_ptr<KeptSelection> m_kept;
    QPointer<MainViewController> m_controller;
    bool m_isEditMode = false;
};
