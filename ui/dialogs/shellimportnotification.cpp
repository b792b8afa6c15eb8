#include "ui/dialogs/shellimportnotification.h"

#include "ui/dialogs/shellfilesmodel.h"
#include "ui/widgets/firstsize.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListView>
#include <QShortcut>
#include <QVBoxLayout>

ShellImportNotification::ShellImportNotification(const QList<ShellFile> &files, QWidget *parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("ShellImportNotification"));
    setWindowTitle(tr("Shell Import Notification"));

    auto *heading =
        new QLabel(tr("The metadata for the following files was not imported since a matching file "
                      "was not found in the destination database."),
                   this);
    heading->setWordWrap(true);
    auto *list = new QListView(this);
    list->setObjectName(QStringLiteral("shellFilesListView"));
    list->setAccessibleName(heading->text());
    // A shell may list a million files.
    list->setUniformItemSizes(true);
    list->setModel(new ShellFilesModel(files, list));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(list);
    layout->addWidget(buttons);
    FirstSize::byFont(this, {480, 360});
}
