#include "ui/dialogs/progressdialog.h"
#include "ui/widgets/fontscale.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace {
constexpr int leastWidth = 360;
constexpr int margin = 16;
} // namespace

ProgressDialog::ProgressDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ProgressDialog"));
    setWindowTitle(tr("File Location"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setMinimumWidth(FontScale::byFont(leastWidth, this));
    auto *bar = new QProgressBar(this);
    bar->setRange(0, 0);
    bar->setAccessibleName(tr("Progress"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(new QLabel(tr("Locating files..."), this));
    layout->addWidget(bar);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressDialog::reject);
}
