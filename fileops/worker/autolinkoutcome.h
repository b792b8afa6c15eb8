#pragma once

#include <QHash>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/** What became of the files that a linked folder brought. */
struct AutoLinkOutcome
{
    qint64 nodeId = 0;               ///< the node whose folder it is
    QStringList paths;               ///< all of them
    QHash<QString, qint64> standIns; ///< left out: the file of the database in the place of each, or 0
    QVector<qint64> knownIds;        ///< were in the database by their path, and may have changed
    bool isWhole = false;            ///< false when some are still to be taken
    bool isCanceled = false;
};
Q_DECLARE_METATYPE(AutoLinkOutcome)
