#pragma once

#include "core/providers/foreignchanges.h"
#include "core/tagging/tagchange.h"
#include "db/undo/changeset.h"
#include "db/undo/replaylosses.h"

/** What has become of changes that the worker has written, once they are stored. */
struct ReplayOutcome
{
    qint64 mergeTarget = 0; ///< of a merge of tags: what it was asked for, and what it made
    QVector<qint64> mergedTags;
    ChangeSet merge;
    TagChanges tagged;      ///< in the order in which it was done
    ForeignChanges touched; ///< the keys of all other rows
    bool areAutoLinksTouched = false;
    ReplayLosses losses;
};
Q_DECLARE_METATYPE(ReplayOutcome)
