#include "ui/dialogs/tagremovaldialog.h"

TagRemovalDialog::TagRemovalDialog(MainViewController *controller, const QVector<qint64> &fileIds,
                                   QWidget *parent)
    : FileTagsDialog(controller, fileIds, PartialIsUnticked, parent)
{
    setObjectName(QStringLiteral("TagRemovalDialog"));
    setWindowTitle(tr("File Tags"));
    build(counts().keys().toVector(), tr(" Tags"));
}
