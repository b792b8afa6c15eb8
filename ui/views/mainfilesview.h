#pragma once

#include <QModelIndex>
#include <QPointer>
#include <QVector>
#include <QWidget>

class Delegate;
class File;
class FileActions;
class ListView;
class MainUi;
class MainViewController;
class Previews;
class QAbstractItemView;
class QDropEvent;
class QItemSelection;
class QItemSelectionModel;
class QKeyEvent;
class QLineEdit;
class QStackedWidget;
class QUrl;
class SelectedFiles;
class TableView;
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

signals:
    /** The first of the files that have been selected; 0 when none is any more. */
    void fileSelected(qlonglong fileId);
    void statusTextChanged(QString text);

public slots:
    void updateActionsAvailability();
    void iconViewSelected(bool on);
    void openContextMenu(const QPoint &pos);
    void openFileExternally();
    /** The flag bypasses the program's own viewer. */
    void openFile(const QModelIndex &index, bool forceExternal);
    void openFile(const QModelIndex &index);
    void openFileTagsEditor();
    void openBrowsTagsEditor();
    void openFileManager();
    void deleteSelectedItems();
    void deleteSelectedItemsFromNode();
    void showFileProperties();
    void showRelatedFiles();
    void searchFile();
    /** The tags stand in the data of the action that was triggered. */
    void linkTagsToFiles();
    void fileDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight);
    void fileSelectionChanged(const QItemSelection &selected);
    void addFiles();
    void addHyperlinks();
    /** Asks for a folder and copies the selected files into it. */
    void extractFiles();
    void extractFilesInFolder(const QString &folder, const QVector<qint64> &fileIds);
    /** Makes the selected external files internal. */
    void transferToInternal();
    /** Makes the thumbnails of all external files anew, whatever is selected. */
    void remakeThumbnails();
    void changeEditMode(bool on);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeViews();
    void setUpView(QAbstractItemView *view);
    void connectActions();
    void attachModel();
    void detachModel();
    void connectModel();
    void restoreHeader();
    void saveHeader();

    QAbstractItemView *currentView() const;
    QItemSelectionModel *selection() const;
    bool isWritable() const;
    /** False, after telling the user so, for a read-only database; silently false without one. */
    const File *fileAt(const QModelIndex &index) const;
    SelectedFiles selectedFiles() const;
    qint64 nodeToRemoveFrom() const;
    void updateStatusText();
    void updateEmptyText();
    void followRequirements();
    bool isSearched() const;
    void endHiddenSearch(bool isFieldShown);
    void applyEditTriggers();
    void openOrEdit(const QModelIndex &index);
    void moveToFile(qint64 fileId);
    void openPreview(const File &file);
    void tellLostSelection();
    void keepSelection();
    void restoreSelection();

    bool handleKey(QKeyEvent *event);
    bool handleSearchKey(const QKeyEvent &event);
    bool handleDrag(QDropEvent *event);
    bool handleDrop(QDropEvent *event);
    void addUrls(const QList<QUrl> &urls);
    /** False while the database does not take it. */
    bool addHyperlink(const QString &text, const QString &description);

    TitleWidget *m_title;
    QStackedWidget *m_stack;
    ListView *m_listView;
    TableView *m_tableView;
    FileActions *m_actions;
    Previews *m_previews;
    QPointer<MainViewController> m_controller;
    QPointer<QLineEdit> m_searchEdit;
    bool m_isEditMode = false;
    bool m_isSearching = false;
    // The selected files and the current one while all data is loaded anew.
    QVector<qint64> m_keptIds;
    qint64 m_keptCurrentId = 0;
};
