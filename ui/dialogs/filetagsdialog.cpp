#include "ui/dialogs/filetagsdialog.h"

#include "app/settings/showntext.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/file.h"
#include "models/base/naturalorder.h"
#include "models/contents/contentsmodel.h"
#include "ui/widgets/customiconwidget.h"
#include "ui/widgets/firstsize.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPair>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int tagIdRole = Qt::UserRole + 1;
constexpr int earlierStateRole = Qt::UserRole + 2;

} // namespace

FileTagsDialog::FileTagsDialog(MainViewController *controller, const QVector<qint64> &fileIds,
                               PartialState partial, QWidget *parent)
    : QDialog(parent),
      m_controller(controller),
      m_fileIds(fileIds),
      m_partial(partial),
      m_list(new QListWidget(this))
{
    countTags();
    FirstSize::byFont(this, {380, 420});
}

void FileTagsDialog::countTags()
{
    const ContentsModel *files = m_controller->contentsModel();
    for (const qint64 fileId : qAsConst(m_fileIds)) {
        const File *file = files->fileAt(files->rowOf(fileId));
        if (!file)
            continue;
        for (const qint64 tagId : file->tags())
            // As many as there are files: all have it; fewer: some do.
            ++m_counts[tagId];
    }
}

void FileTagsDialog::build(const QVector<qint64> &tagIds, const QString &listTitle)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    addHeading(*layout, tagIds.size());

    m_list->setObjectName(QStringLiteral("tagsListWidget"));
    m_list->setAccessibleName(tr("Tags"));
    m_list->setStyleSheet(QStringLiteral("QListWidget {background-color: transparent;}"));
    m_list->setUniformItemSizes(true);
    m_list->setSpacing(2);
    fillList(tagIds);
    if (!listTitle.isEmpty())
        layout->addWidget(new QLabel(listTitle, this));
    layout->addWidget(m_list, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FileTagsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FileTagsDialog::reject);
    layout->addWidget(buttons);
    m_list->setFocus();
}

QString FileTagsDialog::headingText(int tagCount) const
{
    const bool isOneFile = m_fileIds.size() == 1;
    if (tagCount == 0)
        return tr("There are no tags to choose from.");
    if (tagCount == 1)
        return isOneFile ? tr("Check or uncheck boxes to link or unlink the following tag from this file")
                         : tr("Check or uncheck boxes to link or unlink the following tag from these files");
    return isOneFile ? tr("Check or uncheck boxes to link or unlink the following tags from this file")
                     : tr("Check or uncheck boxes to link or unlink the following tags from these files");
}

void FileTagsDialog::addHeading(QVBoxLayout &layout, int tagCount)
{
    auto *label = new QLabel(headingText(tagCount), this);
    label->setObjectName(QStringLiteral("headingLabel"));
    label->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(new CustomIconWidget(QIcon(QStringLiteral(":/icons/tag.png")), 32, this), 0, Qt::AlignTop);
    row->addWidget(label, 1);
    layout.addLayout(row);
}

void FileTagsDialog::fillList(const QVector<qint64> &tagIds)
{
    const QHash<qint64, QString> names = m_controller->collection()->tagsController()->tagsNames(tagIds);
    QVector<QPair<QString, qint64>> sorted;
    sorted.reserve(tagIds.size());
    for (const qint64 tagId : tagIds)
        sorted.append({names.value(tagId), tagId});
    std::sort(sorted.begin(), sorted.end(),
              [](const auto &left, const auto &right) { return naturalLessThan(left.first, right.first); });
    for (const auto &[name, tagId] : qAsConst(sorted)) {
        const int count = m_counts.value(tagId);
        const Qt::CheckState state = stateOf(count);
        auto *item = new QListWidgetItem(ShownText::cut(name), m_list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        // So that the user can go back to how it was.
        if (state == Qt::PartiallyChecked)
            item->setFlags(item->flags() | Qt::ItemIsUserTristate);
        item->setData(tagIdRole, tagId);
        item->setData(earlierStateRole, int(state));
        item->setCheckState(state);
        // Of one file the box says it all.
        if (m_fileIds.size() > 1)
            item->setToolTip(
                tr("On %1 of %Ln files", nullptr, m_fileIds.size()).arg(QLocale().toString(count)));
    }
}

Qt::CheckState FileTagsDialog::stateOf(int count) const
{
    if (count == m_fileIds.size())
        return Qt::Checked;
    return count > 0 && m_partial == PartialIsTristate ? Qt::PartiallyChecked : Qt::Unchecked;
}

QVector<qint64> FileTagsDialog::tagsChangedTo(Qt::CheckState state) const
{
    QVector<qint64> tagIds;
    for (int row = 0; row < m_list->count(); ++row) {
        const QListWidgetItem *item = m_list->item(row);
        if (item->checkState() == state && item->data(earlierStateRole).toInt() != int(state))
            tagIds.append(item->data(tagIdRole).toLongLong());
    }
    return tagIds;
}

void FileTagsDialog::accept()
{
    // What a busy database refuses may go through at a second try, so the boxes stay as they are.
    if (m_controller->changeTags(m_fileIds, tagsChangedTo(Qt::Checked), tagsChangedTo(Qt::Unchecked)))
        QDialog::accept();
}
