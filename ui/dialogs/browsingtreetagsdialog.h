#pragma once

#include "ui/dialogs/filetagsdialog.h"

/** The tags that stand in the browsing tree; those that only some of the files have are half ticked. */
class BrowsingTreeTagsDialog : public FileTagsDialog
{
    Q_OBJECT

public:
    BrowsingTreeTagsDialog(MainViewController *controller, const QVector<qint64> &fileIds,
                           QWidget *parent = nullptr);

public slots:
    void done(int result) override;

private:
    QVector<qint64> tagsOfTree() const;
};
