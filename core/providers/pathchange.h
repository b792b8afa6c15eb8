#pragma once

#include <QString>
#include <QVector>

/** A new value for "path" or "rel_path" of an external file. */
struct PathChange
{
    qint64 fileId = 0;
    QString column;
    QString value;
};
using PathChanges = QVector<PathChange>;
