#include "core/controllers/exportselection.h"

#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/tbnode.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"

#include <QSet>

namespace {
QVector<qint64> filesOf(const MainViewController &files, const TagRequirements &requirements)
{
    // A filter of its own, made and thrown away: the one of the window holds what is shown, which need not
    // change.
    FileFilterModel filter;
    filter.setTagRequirements(requirements);
    filter.setSourceModel(files.contentsModel());
    return filter.acceptedFiles();
}

QVector<qint64> filesOf(const MainViewController &files, NodeType special)
{
    FileFilterModel filter;
    filter.setSpecialNode(special);
    filter.setSourceModel(files.contentsModel());
    return filter.acceptedFiles();
}
} // namespace

void ExportSelection::add(const ExportSelection &other)
{
    const auto addNew = [](QVector<qint64> &to, const QVector<qint64> &from) {
        QSet<qint64> known(to.cbegin(), to.cend());
        for (const qint64 id : from) {
            // One look into the set for each id, of which a node of all files has a million.
            const int count = known.size();
            known.insert(id);
            if (known.size() > count)
                to.append(id);
        }
    };
    // The first one brings its options along.
    if (isEmpty()) {
        *this = other;
        return;
    }
    addNew(fileIds, other.fileIds);
    addNew(tagIds, other.tagIds);
}

ExportSelection ExportSelection::ofFiles(const QVector<qint64> &fileIds)
{
    ExportSelection selection;
    selection.fileIds = fileIds;
    return selection;
}

ExportSelection ExportSelection::ofNode(const BrowsTreeController &tree, NodeType type, qint64 nodeId)
{
    const MainViewController &files = *tree.collection()->mainViewController();
    if (type != TagNode)
        return ofFiles(filesOf(files, type));
    ExportSelection selection;
    if (const TBnode *node = tree.nodeById(nodeId)) {
        QVector<qint64> excluded;
        node->collectTagRequirements(selection.tagIds, excluded);
        selection.fileIds = filesOf(files, tree.requirementsOf(nodeId, selection.tagIds, excluded));
        // The exported node needs the tags that it excludes, too.
        selection.tagIds += excluded;
    }
    return selection;
}

ExportSelection ExportSelection::ofFilesWithTags(const MainViewController &files,
                                                 const QVector<qint64> &tagIds)
{
    ExportSelection selection;
    selection.fileIds = filesOf(files, files.requirementsOfAny(tagIds));
    selection.tagIds = tagIds;
    return selection;
}

ExportSelection ExportSelection::ofTags(const MainViewController &files, const QVector<qint64> &tagIds)
{
    ExportSelection selection;
    TagRequirements bearing;
    // Without the tags below them: those are not exported, so that their files would come without a reason.
    bearing.eitherOr = tagIds;
    selection.fileIds = filesOf(files, bearing);
    selection.tagIds = tagIds;
    selection.addAllTagsOfFiles = false;
    return selection;
}
