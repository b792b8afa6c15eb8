#pragma once

#include <QStringList>
#include <QVector>

/** Tags that somebody has named: those that there are by their ids, and names of tags that are to be made. */
struct ChosenTags
{
    QVector<qint64> ids;
    QStringList newNames;

    bool isEmpty() const { return ids.isEmpty() && newNames.isEmpty(); }
};
