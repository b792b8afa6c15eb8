#include "ui/dialogs/propertiesdialog.h"

#include "app/settings/showntext.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "ui/widgets/firstsize.h"

#include <QDialogButtonBox>
#include <QLocale>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
constexpr int longestFact = 5000; // signs
}

PropertiesDialog::PropertiesDialog(const File &file, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("PropertiesDialog"));
    setWindowTitle(tr("File Properties"));

    auto *edit = new QTextEdit(this);
    edit->setObjectName(QStringLiteral("propertiesTextEdit"));
    edit->setAccessibleName(tr("File Properties"));
    edit->setReadOnly(true);
    edit->setStyleSheet(QStringLiteral("QTextEdit {background-color: transparent; border: none; }"));
    edit->setPlainText(ShownText::cutLines(text(file), longestFact));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &PropertiesDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    FirstSize::byFont(this, {480, 280});
}

QString PropertiesDialog::text(const File &file)
{
    const QString dateFormat = QStringLiteral("ddd dd MMM yyyy hh:mm:ss");
    const bool isInternal = file.internal() == FileKind::internal;
    const QString inside = tr("internal");
    // All values in one call: a name may hold "%1" itself.
    return tr("Name: %1\nDescription: %2\nAdded: %3\nModified: %4\nSize: %5\nAbsolute path: %6\n"
              "Relative path: %7\n")
        .arg(file.name(), file.description(), QLocale().toString(file.additionDate(), dateFormat),
             QLocale().toString(file.modificationDate(), dateFormat),
             file.size() == 1 ? tr("1 byte")
                              : tr("%1 bytes", nullptr, ShownText::forPlural(file.size()))
                                    .arg(QLocale().toString(file.size())),
             isInternal ? inside : file.path(), isInternal ? inside : file.relPath());
}
