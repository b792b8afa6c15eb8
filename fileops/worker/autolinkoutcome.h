#pragma once

#include <QHash>
#include <QMetaType>
#include <QString>

/** What became of the files that a linked folder brought. */
struct AutoLinkOutcome
{
    qint64 requestId = 0;            ///< as the request had it
    QHash<QString, qint64> standIns; ///< left out: the file of the database in the place of each, or 0
    QHash<QString, qint64> known;    ///< were in the database by their path, and may have changed
    int addedCount = 0;
    bool isWhole = false;    ///< false when some are still to be taken
    bool isCanceled = false; ///< by the user
};
Q_DECLARE_METATYPE(AutoLinkOutcome)
