#pragma once

#include <QVector>

class BrTreeSorterModel;
class QTreeView;

/** Which branches of the browsing tree are open in its view, by the ids of their nodes. Made for one use. */
class OpenNodes
{
public:
    /** The model is that of the view. */
    OpenNodes(QTreeView &view, const BrTreeSorterModel &model) : m_view(view), m_model(model) {}

    QVector<qint64> ids() const;
    /** Those that are there and closed. */
    void open(const QVector<qint64> &nodeIds);
    /** The branches in which these nodes stand, down to the highest of them. */
    void openTo(const QVector<qint64> &nodeIds);

private:
    QTreeView &m_view;
    const BrTreeSorterModel &m_model;
};
