#include "ui/dialogs/browsingtreetagsdialog.h"

#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/tbnode.h"

#include <QSet>

namespace {
const QString geometryKey = QStringLiteral("BrowsingTreeTags/geometry");
} // namespace

BrowsingTreeTagsDialog::BrowsingTreeTagsDialog(MainViewController *controller, const QVector<qint64> &fileIds,
                                               QWidget *parent)
    : FileTagsDialog(controller, fileIds, PartialIsTristate, parent)
{
    setObjectName(QStringLiteral("BrowsingTreeTagsDialog"));
    setWindowTitle(tr("Browsing Tree Tags"));
    build(tagsOfTree());
    restoreGeometry(WindowSettings::layout(geometryKey));
}

QVector<qint64> BrowsingTreeTagsDialog::tagsOfTree() const
{
    QSet<qint64> tagIds;
    const BrowsTreeController *tree = controller()->collection()->browsTreeController();
    // Without recursion, as a damaged database may chain more nodes than a stack has room for.
    QList<const TBnode *> waiting{tree->rootNode()};
    while (!waiting.isEmpty()) {
        const TBnode *node = waiting.takeLast();
        if (!node)
            continue;
        if (node->nodeType() == TagNode)
            tagIds.insert(node->tagId());
        for (const TBnode *child : node->children())
            waiting.append(child);
    }
    return tagIds.values().toVector();
}

void BrowsingTreeTagsDialog::done(int result)
{
    WindowSettings::setLayout(geometryKey, saveGeometry());
    QDialog::done(result);
}
