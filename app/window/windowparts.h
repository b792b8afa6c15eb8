#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class BrowsingTreeViewDock;
class Collection;
class ExternalFilesDock;
class KeptPlaces;
class MainFilesView;
class MainUi;
class MetaInfoDock;
class QDockWidget;
class QMainWindow;
class RelationTreeViewDock;
class StatusLine;
class TagsTableDock;

/**
 * The files in the middle of the window and the docks around them: makes and arranges them, gives each its
 * commands' places and its part of the open collection. Owned by the window, as they are.
 */
class WindowParts : public QObject
{
    Q_OBJECT

public:
    explicit WindowParts(QMainWindow *window);

    MainFilesView *files() const { return m_files; }
    BrowsingTreeViewDock *browsingDock() const { return m_browsingDock; }

    void takePlaces(MainUi &ui);
    /** Puts all docks back to their places and shows them. */
    void arrangeDocks();
    /** Lets Tab go as the eye does: the bars, then the docks and the files from left to right and down. */
    void arrangeTabOrder(const MainUi &ui);

    /** While a collection is being opened: what it reloads is shown. */
    void followReloads(Collection *collection);
    void attach(Collection &collection);
    void detach();

private:
    QList<QDockWidget *> docks() const;
    void takePlaceOfCounts(MainUi &ui);
    void showCounts(bool shown);
    int wantedTreesWidth() const;
    void widenTrees();

    QMainWindow *m_window;
    MainFilesView *m_files;
    TagsTableDock *m_tagsDock;
    RelationTreeViewDock *m_relationsDock;
    MetaInfoDock *m_metadataDock;
    BrowsingTreeViewDock *m_browsingDock;
    ExternalFilesDock *m_externalFilesDock;
    StatusLine *m_status;
    KeptPlaces *m_places;
    QPointer<Collection> m_collection;
    int m_treesWidth = 0; // as given by the arrangement, not by hand
};
