#pragma once

#include "ui/dialogs/filetagsdialog.h"

/** All tags of some files: ticked are those that all of the files have, unticked those that some have. */
class TagRemovalDialog : public FileTagsDialog
{
    Q_OBJECT

public:
    TagRemovalDialog(MainViewController *controller, const QVector<qint64> &fileIds,
                     QWidget *parent = nullptr);
};
