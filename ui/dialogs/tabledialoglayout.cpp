#include "ui/dialogs/tabledialoglayout.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

void layOutTableDialog(QDialog *dialog, const QString &hint, QWidget *table, QLayout *buttons)
{
    auto *label = new QLabel(hint, dialog);
    label->setWordWrap(true);
    auto *close = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(close, &QDialogButtonBox::rejected, dialog, &QDialog::reject);

    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(label);
    layout->addWidget(table);
    layout->addLayout(buttons);
    layout->addWidget(close);
}
