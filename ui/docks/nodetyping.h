#pragma once

#include <QObject>
#include <QPointer>

class BrowsTreeController;
class NamesLine;
class QAction;
class QMenu;
class TBtreeView;
struct ChosenTags;

/**
 * The browsing tree by the keyboard: nodes are named in a line, and moved among their siblings. Makes the
 * commands; the dock of the tree owns it and gives the line its place. GUI thread.
 */
class NodeTyping : public QObject
{
    Q_OBJECT

public:
    NodeTyping(TBtreeView *view, QObject *parent);

    /** Borrowed; null, before it goes, closes the line. */
    void setController(BrowsTreeController *controller);
    NamesLine *line() const { return m_line; }
    void addTo(QMenu &menu) const;
    void updateAvailability();

private:
    QAction *addAction(const QString &text, const char *objectName, const QString &key);
    void openFor(bool isBelow);
    bool take(const ChosenTags &tags);
    void move(int rows);
    void makeCurrent(qint64 nodeId);

    TBtreeView *m_view;
    NamesLine *m_line;
    QAction *m_add;
    QAction *m_addBelow;
    QAction *m_moveUp;
    QAction *m_moveDown;
    QPointer<BrowsTreeController> m_controller;
    qint64 m_parentId = 0;
};
