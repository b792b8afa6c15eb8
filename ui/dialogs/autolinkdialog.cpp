#include "ui/dialogs/autolinkdialog.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

AutoLinkDialog::AutoLinkDialog(const QString &absolutePath, const QString &relativePath, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Auto Linking"));
    auto *label =
        new QLabel(tr("Absolute path: %1\nRelative path: %2").arg(absolutePath, relativePath), this);
    label->setObjectName(QStringLiteral("pathsLabel"));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    auto *ok = new QPushButton(tr("Ok"), this);
    connect(ok, &QPushButton::clicked, this, &AutoLinkDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(ok, 0, Qt::AlignRight);
    // Long paths break only where their names do: wide enough for most, and never wider than a screen.
    label->setMinimumWidth(qMin(label->fontMetrics().size(0, label->text()).width() + 2, 700));
}
