#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVector>

class MainUi;
class QAction;
class QLineEdit;
class QMenu;

/** What a selection of files is made of, as far as commands depend on it. */
struct SelectedFilesFacts
{
    int count = 0;
    bool areAllInternal = false;
    bool areAllExternal = false;
    bool hasHyperlink = false;
    bool hasMissing = false;
    /** The first file has a thumbnail of its own. */
    bool isPicture = false;
};

/**
 * The commands on files: makes them, puts them into the menu and the bars, and decides which are offered.
 * What they do is the business of the view that owns this. GUI thread.
 */
class FileActions : public QObject
{
    Q_OBJECT

public:
    /** The keys of the table of commands. */
    enum Key : int {
        FileMenu = 0,
        List = 1,
        Thumbnails = 2,
        FileSearch = 3,
        AddFiles = 4,
        AddHyperlink = 5,
        LocateMissingFiles = 6,
        TransferToInternal = 7,
        ExtractFiles = 8,
        RemoveFromNode = 9,
        Delete = 10,
        LinkTags = 11,
        TagsMenu = 12,
        FileTags = 13,
        BrowsingTreeTags = 14,
        OpenExternally = 15,
        ShowInFileManager = 16,
        DeleteFromContext = 17,
        ExtractFromContext = 18,
        Properties = 19,
        ShowRelated = 20,
        LocateFromContext = 21,
        ExportMenuEntry = 23,
        SearchLine = 27
    };

    explicit FileActions(QObject *parent);

    /** Fills the menu "File" and the bars that belong to files. */
    void takePlaces(MainUi &ui);
    /** Null for the keys of the window while takePlaces has not run. */
    QAction *action(Key key) const { return m_actions.value(key); }

    /** The sub-menu "Export" of the context menu. */
    void setExportMenu(QAction *entry) { m_actions.insert(ExportMenuEntry, entry); }

    /** What the commands depend on. */
    struct Situation
    {
        bool isWritable = false;
        bool hasSelection = false;
        bool areAllInternal = false;
        bool hasHyperlink = false;
        bool hasMissing = false; ///< among all that are shown
        qint64 nodeId = 0;       ///< that of "Remove from node", 0 for none
    };
    void updateAvailability(const Situation &situation);
    /** Appends the entries that fit the selection. */
    void fillContextMenu(QMenu &menu, const SelectedFilesFacts &facts, bool isWritable);

private:
    QAction *add(Key key, const QString &text, const char *objectName, const char *icon = nullptr);
    void makeActions();
    void fillFileMenu(QMenu &menu);
    void makeViewMode(MainUi &ui);
    void makeSearch(MainUi &ui);
    static QString deleteText(const SelectedFilesFacts &facts);

    QHash<int, QAction *> m_actions;
    QPointer<QLineEdit> m_searchEdit;
};
