#pragma once

#include "core/records/autolink.h"
#include "core/records/datatype.h"
#include "core/records/file.h"
#include "core/records/groupitem.h"
#include "core/records/map.h"
#include "core/records/nodetype.h"
#include "core/records/tagitem.h"
#include "core/records/tbnode.h"
#include "core/records/trnode.h"
#include "core/records/vector.h"

#include <QPair>

using FileMap = Map<qint64, File *>;
using TBnodeMap = Map<qint64, TBnode *>;
using GroupMap = Map<qint64, GroupItem *>;
using TextMap = Map<qint64, QString>;
using AutoLinkMap = Map<QString, AutoLink *>;
using TagVector = Vector<TagItem *>;
/** Relationship nodes, each with its full path of tag ids. */
using TRnodeVector = Vector<QPair<QString, TRnode *>>;

Q_DECLARE_METATYPE(FileMap)
Q_DECLARE_METATYPE(TBnodeMap)
Q_DECLARE_METATYPE(GroupMap)
Q_DECLARE_METATYPE(TextMap)
Q_DECLARE_METATYPE(AutoLinkMap)
Q_DECLARE_METATYPE(TagVector)
Q_DECLARE_METATYPE(TRnodeVector)

/** Makes the types of this layer known to queued signals, by the names that the signals use. Once, at start.
 */
void registerRecordTypes();
