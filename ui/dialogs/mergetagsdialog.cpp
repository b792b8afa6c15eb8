#include "ui/dialogs/mergetagsdialog.h"

#include "app/settings/showntext.h"
#include "core/controllers/tagscontroller.h"
#include "models/base/naturalorder.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int idRole = Qt::UserRole;
constexpr int longestName = 60; // signs
constexpr int widestText = 400;
} // namespace

MergeTagsDialog::MergeTagsDialog(TagsController *controller, const QVector<qint64> &tagIds, QWidget *parent)
    : QDialog(parent),
      m_controller(controller),
      m_tagIds(tagIds),
      m_tags(new QListWidget(this)),
      m_outcome(new QLabel(this))
{
    setObjectName(QStringLiteral("MergeTagsDialog"));
    setWindowTitle(tr("Merge Tags"));
    buildLayout();
    fillTags();
    connect(m_tags, &QListWidget::currentRowChanged, this, &MergeTagsDialog::tell);
    connect(m_tags, &QListWidget::itemDoubleClicked, this, &MergeTagsDialog::accept);
    tell();
}

void MergeTagsDialog::buildLayout()
{
    auto *question = new QLabel(tr("Which of the tags stays?"), this);
    question->setBuddy(m_tags);
    m_tags->setObjectName(QStringLiteral("keptTagList"));
    m_tags->setAccessibleName(question->text());
    m_outcome->setObjectName(QStringLiteral("outcomeLabel"));
    m_outcome->setWordWrap(true);
    m_outcome->setMinimumWidth(widestText);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    auto *merge = buttons->addButton(tr("Merge"), QDialogButtonBox::AcceptRole);
    merge->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &MergeTagsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &MergeTagsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(question);
    layout->addWidget(m_tags);
    layout->addWidget(m_outcome);
    layout->addWidget(buttons);
}

void MergeTagsDialog::fillTags()
{
    const QHash<qint64, QString> names = m_controller->tagsNames(m_tagIds);
    std::sort(m_tagIds.begin(), m_tagIds.end(), [&names](qint64 left, qint64 right) {
        return naturalLessThan(names.value(left), names.value(right));
    });
    // The one that most files have is the one that is meant as a rule.
    int most = 0;
    for (int i = 0; i < m_tagIds.size(); ++i) {
        const qint64 tagId = m_tagIds.at(i);
        const auto files = int(m_controller->filesCount(tagId));
        if (files > m_controller->filesCount(m_tagIds.at(most)))
            most = i;
        const QString count = files == 1 ? tr("1 file") : tr("%Ln files", nullptr, files);
        auto *item = new QListWidgetItem(tr("%1 (%2)", "the name of a tag and its files")
                                             .arg(ShownText::cut(names.value(tagId), longestName), count),
                                         m_tags);
        item->setData(idRole, tagId);
    }
    m_tags->setCurrentRow(most);
}

qint64 MergeTagsDialog::target() const
{
    return m_tags->currentItem() ? m_tags->currentItem()->data(idRole).toLongLong() : 0;
}

QVector<qint64> MergeTagsDialog::others() const
{
    QVector<qint64> ids = m_tagIds;
    ids.removeAll(target());
    return ids;
}

void MergeTagsDialog::tell()
{
    if (!m_controller)
        return;
    const QVector<qint64> going = others();
    int links = 0;
    for (const qint64 tagId : going)
        links += int(m_controller->filesCount(tagId));
    const int nodes = m_controller->nodesCount(going);
    const int relations = m_controller->relationsCount(going);
    const auto number = [](int n) { return QLocale().toString(n); };
    m_outcome->setText(
        tr("Tags that go: %1. Their links to files: %2, their nodes: %3, their tag relationships: %4, and "
           "their places in groups go to the tag that stays. What it has already, and what would stand below "
           "itself, falls away. Edit > Undo takes all of it back.")
            .arg(number(going.size()), number(links), number(nodes), number(relations)));
}

void MergeTagsDialog::accept()
{
    if (!m_controller || (target() > 0 && m_controller->mergeTags(target(), others())))
        QDialog::accept();
}
