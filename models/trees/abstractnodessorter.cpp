#include "models/trees/abstractnodessorter.h"

void AbstractNodesSorter::moveNode(qint64, qint64, qint64, bool) {}

void AbstractNodesSorter::moveToRow(qint64, qint64, int) {}

void AbstractNodesSorter::nodeAdded(qint64, qint64) {}

void AbstractNodesSorter::nodeRemoved(qint64, qint64) {}

void AbstractNodesSorter::load(const QMap<qint64, QList<qint64>> &) {}

void AbstractNodesSorter::save(QMap<qint64, QList<qint64>> &) const {}

void AbstractNodesSorter::setTree(TBnode *) {}
