#include "ui/dialogs/databasecontentsselector.h"

#include "app/settings/showntext.h"
#include "ui/widgets/firstsize.h"
#include "ui_databasecontentsselector.h"

#include <QDebug>
#include <QFileInfo>
#include <QPair>
#include <QPushButton>
#include <QVector>

namespace {

using Part = ExchangeSettings::Part;

constexpr int longestName = 100; // signs

QVector<QPair<Part, QCheckBox *>> boxes(const Ui::DatabaseContentsSelector &ui)
{
    return {{Part::Files, ui.filesBox},         {Part::Tags, ui.tagsBox},
            {Part::BrowsingNodes, ui.nodesBox}, {Part::TagRelationships, ui.relationshipsBox},
            {Part::FileTags, ui.fileTagsBox},   {Part::TagGroups, ui.groupsBox}};
}

bool isChosen(const QCheckBox *box)
{
    return box->isEnabled() && box->isChecked();
}

} // namespace

DatabaseContentsSelector::DatabaseContentsSelector(const QString &path, bool isShell, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::DatabaseContentsSelector>()), m_isShell(isShell)
{
    qDebug() << "Making a list of files to import from database";
    m_ui->setupUi(this);
    const QString name = ShownText::cut(QFileInfo(path).fileName(), longestName);
    m_ui->headingLabel->setText(isShell ? tr("What should the files that this database shares with the shell "
                                             "\"%1\" take over?")
                                              .arg(name)
                                        : tr("What should be imported from \"%1\"?").arg(name));
    load();
    for (QCheckBox *box : findChildren<QCheckBox *>())
        connect(box, &QCheckBox::toggled, this, &DatabaseContentsSelector::updateAvailability);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DatabaseContentsSelector::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DatabaseContentsSelector::reject);
    updateAvailability();
    FirstSize::byContents(this);
}

DatabaseContentsSelector::~DatabaseContentsSelector() = default;

void DatabaseContentsSelector::load()
{
    for (const auto &box : boxes(*m_ui))
        box.second->setChecked(ExchangeSettings::isWanted(box.first));
    if (m_isShell)
        // A shell holds no contents.
        m_ui->filesBox->setChecked(false);
    const ExchangeSettings::DescriptionMerge merge = ExchangeSettings::descriptionMerge();
    m_ui->descriptionsBox->setChecked(merge != ExchangeSettings::LeaveDescriptions);
    m_ui->replaceButton->setChecked(merge == ExchangeSettings::ReplaceDescriptions);
    m_ui->appendButton->setChecked(merge != ExchangeSettings::ReplaceDescriptions);
}

void DatabaseContentsSelector::updateAvailability()
{
    m_ui->filesBox->setEnabled(!m_isShell);
    for (QCheckBox *box : {m_ui->nodesBox, m_ui->relationshipsBox, m_ui->fileTagsBox, m_ui->groupsBox})
        box->setEnabled(m_ui->tagsBox->isChecked());
    for (QRadioButton *button : {m_ui->appendButton, m_ui->replaceButton})
        button->setEnabled(m_ui->descriptionsBox->isChecked());
    bool isAnythingChosen = false;
    for (const QCheckBox *box : findChildren<QCheckBox *>())
        isAnythingChosen = isAnythingChosen || isChosen(box);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(isAnythingChosen);
}

ImportOptions DatabaseContentsSelector::options() const
{
    ImportOptions options;
    options.files = isChosen(m_ui->filesBox);
    options.tags = isChosen(m_ui->tagsBox);
    options.browsingNodes = isChosen(m_ui->nodesBox);
    options.tagRelationships = isChosen(m_ui->relationshipsBox);
    options.fileTags = isChosen(m_ui->fileTagsBox);
    options.tagGroups = isChosen(m_ui->groupsBox);
    if (isChosen(m_ui->descriptionsBox))
        options.descriptions = m_ui->replaceButton->isChecked() ? ExchangeSettings::ReplaceDescriptions
                                                                : ExchangeSettings::AppendDescriptions;
    return options;
}

void DatabaseContentsSelector::accept()
{
    for (const auto &box : boxes(*m_ui)) {
        // The stored choice outlasts a shell, for which it cannot be made.
        if (!m_isShell || box.first != Part::Files)
            ExchangeSettings::setWanted(box.first, box.second->isChecked());
    }
    ExchangeSettings::setDescriptionMerge(options().descriptions);
    QDialog::accept();
}
