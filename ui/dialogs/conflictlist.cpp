#include "ui/dialogs/conflictlist.h"

#include "app/settings/showntext.h"
#include "core/controllers/miscoperationthread.h"
#include "ui/widgets/fontscale.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScrollBar>

namespace {

constexpr int nameWidth = 260;
constexpr int gap = 18;
constexpr int margin = 10;
constexpr int padding = 8;

// A name is cut in the middle, as its ending tells what it is, and shown whole by the pointer.
QString shortened(const QWidget &widget, const QString &name)
{
    return widget.fontMetrics().elidedText(ShownText::cut(name), Qt::ElideMiddle,
                                           FontScale::byFont(nameWidth, &widget));
}

QWidget *rowOf(const QButtonGroup *group)
{
    return static_cast<QWidget *>(group->parent());
}

} // namespace

ConflictList::ConflictList(QWidget *parent) : QScrollArea(parent)
{
    setWidget(new QWidget(this));
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ConflictList::updateRows);
}

void ConflictList::setConflicts(const QVector<FileConflict> &conflicts)
{
    m_conflicts = conflicts;
    m_choices.fill(MiscOperationThread::ReplaceChoice, conflicts.size());
    m_rowHeight = QRadioButton(tr("Replace"), this).sizeHint().height() + padding;
    verticalScrollBar()->setSingleStep(m_rowHeight);
    updateRows();
}

void ConflictList::chooseForAll(int choice)
{
    m_choices.fill(choice);
    for (const QButtonGroup *group : qAsConst(m_groups))
        group->button(choice)->setChecked(true);
}

FileConflictChoices ConflictList::choices() const
{
    FileConflictChoices choices;
    choices.reserve(m_conflicts.size());
    for (int row = 0; row < m_conflicts.size(); ++row)
        choices.append({m_conflicts.at(row).fileId, m_choices.at(row)});
    return choices;
}

void ConflictList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    updateRows();
}

void ConflictList::updateRows()
{
    if (m_conflicts.isEmpty())
        return;
    widget()->resize(qMax(viewport()->width(), m_widest), m_conflicts.size() * m_rowHeight);
    // Rows for the page that is seen and one on either side: widgets for a hundred thousand conflicts would
    // take minutes and gigabytes.
    const int page = viewport()->height() / m_rowHeight + 1;
    const int top = verticalScrollBar()->value() / m_rowHeight;
    const int first = qMax(0, top - page);
    const int last = qMin(m_conflicts.size() - 1, top + 2 * page);
    for (auto group = m_groups.begin(); group != m_groups.end();) {
        QWidget *row = rowOf(*group);
        row->resize(widget()->width(), m_rowHeight);
        // The one with the focus stays, so that the keys go on from it.
        const bool isFar = group.key() < first || group.key() > last;
        if (isFar && !row->isAncestorOf(focusWidget())) {
            group = m_groups.erase(group);
            delete row;
        } else {
            ++group;
        }
    }
    for (int row = first; row <= last; ++row) {
        if (!groupAt(row))
            makeRow(row);
    }
    linkRows();
    // A new row was wider than all before; the second pass makes none.
    if (m_widest > widget()->width())
        updateRows();
}

void ConflictList::makeRow(int row)
{
    const FileConflict &conflict = m_conflicts.at(row);
    auto *line = new QWidget(widget());
    auto *name = new QLabel(shortened(*this, conflict.name), line);
    name->setTextFormat(Qt::PlainText);
    name->setFixedWidth(FontScale::byFont(nameWidth, name));
    name->setToolTip(ShownText::toolTip(conflict.name));
    auto *replace = new QRadioButton(tr("Replace"), line);
    QString newName = shortened(*this, conflict.newName);
    newName.replace(QLatin1Char('&'), QLatin1String("&&")); // alone it would underline a letter
    auto *useNewName = new QRadioButton(tr("Use New Name: %1").arg(newName), line);
    useNewName->setToolTip(ShownText::toolTip(conflict.newName));
    for (QRadioButton *button : {replace, useNewName})
        button->setAccessibleDescription(conflict.name);

    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(margin, 0, margin, 0);
    layout->setSpacing(gap);
    layout->addWidget(name);
    layout->addWidget(replace);
    layout->addWidget(useNewName, 1);

    auto *group = new QButtonGroup(line);
    m_widest = qMax(m_widest, line->sizeHint().width());
    group->addButton(replace, MiscOperationThread::ReplaceChoice);
    group->addButton(useNewName, MiscOperationThread::UseNewNameChoice);
    group->button(m_choices.at(row))->setChecked(true);
    connect(group, &QButtonGroup::idToggled, this, [this, row](int choice, bool isOn) {
        if (isOn)
            // Noted at once, as the row's widgets go when it is scrolled away.
            m_choices[row] = choice;
    });
    m_groups.insert(row, group);
    line->setGeometry(0, row * m_rowHeight, widget()->width(), m_rowHeight);
    line->show();
}

// Rows are made in any order, and Tab goes through them from top to bottom.
void ConflictList::linkRows()
{
    QWidget *before = nullptr;
    for (const QButtonGroup *group : qAsConst(m_groups)) {
        for (QAbstractButton *button : group->buttons()) {
            if (before)
                setTabOrder(before, button);
            before = button;
        }
    }
}
