#pragma once

#include "core/records/nodetype.h"

#include <QVector>

class BrowsTreeController;
class MainViewController;

/** The files and tags that an export gesture means. */
struct ExportSelection
{
    QVector<qint64> fileIds;
    QVector<qint64> tagIds;
    bool addAllTagsOfFiles = true;

    /** Takes in what it does not have yet. */
    void add(const ExportSelection &other);
    bool isEmpty() const { return fileIds.isEmpty() && tagIds.isEmpty(); }

    static ExportSelection ofFiles(const QVector<qint64> &fileIds);
    /** The files that a node shows, and the tags on the way down to it. */
    static ExportSelection ofNode(const BrowsTreeController &tree, NodeType type, qint64 nodeId);
    /** The files that are shown for any of the tags. */
    static ExportSelection ofFilesWithTags(const MainViewController &files, const QVector<qint64> &tagIds);
    /** The tags and no others, and the files that bear one of them. */
    static ExportSelection ofTags(const MainViewController &files, const QVector<qint64> &tagIds);
};
