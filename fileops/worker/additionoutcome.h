#pragma once

#include "core/tagging/tagchange.h"

/** What an add came to, once it is stored. */
struct AdditionOutcome
{
    int added = 0;
    int alreadyThere = 0;   ///< files whose contents the database has
    QVector<qint64> nodes;  ///< made out of folders
    TagChanges matchedTags; ///< what files of the database got by that
};
Q_DECLARE_METATYPE(AdditionOutcome)
