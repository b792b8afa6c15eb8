#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QTimer>

class QTreeView;

/**
 * Opens the closed branch over which a drag rests for a moment. The toolkit's own delay would close an open
 * branch as well, and does not see drags that come from elsewhere. Belongs to its view.
 */
class HoverOpener : public QObject
{
    Q_OBJECT

public:
    explicit HoverOpener(QTreeView *view);

    /** For each move of a drag: the row under the cursor, or an invalid index. */
    void hover(const QModelIndex &index);
    void stop();

private:
    void open();

    QTreeView *m_view;
    QPersistentModelIndex m_index;
    QTimer m_timer;
};
