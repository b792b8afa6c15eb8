#pragma once

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

class HoverOpener;

/**
 * What the trees of the window share: names are never cut off, however deep they stand, as the only column is
 * as wide as the widest open row; a drag makes the row under it current and opens it.
 */
class BranchView : public QTreeView
{
    Q_OBJECT

public:
    explicit BranchView(QWidget *parent = nullptr);

    /** Moves sideways only as far as it takes to show the name. */
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

public slots:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QVector<int> &roles = QVector<int>()) override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;

    /** Makes a row the only selected one where it stands: what is under the cursor must not slip away. */
    void makeCurrent(const QModelIndex &index);
    HoverOpener *hoverOpener() const { return m_hoverOpener; }
    /** Notes the selected row that is current again when a drag leaves. */
    void keepCurrent();
    void restoreCurrent() { makeCurrent(m_currentBeforeDrag); }

protected slots:
    void updateGeometries() override;

private:
    void fitColumn();
    void fitColumnSoon();

    HoverOpener *m_hoverOpener;
    QPersistentModelIndex m_currentBeforeDrag;
    QTimer m_fitTimer; ///< gathers the changes of one edit
    bool m_isResizing = false;
};
