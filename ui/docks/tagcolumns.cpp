#include "ui/docks/tagcolumns.h"

#include "app/settings/windowsettings.h"
#include "models/tags/tagstablemodel.h"

#include <QHeaderView>
#include <QTableView>

namespace {
constexpr int leastLetters = 4;
} // namespace

void TagColumns::restore()
{
    QHeaderView *header = m_table->horizontalHeader();
    if (!header->restoreState(WindowSettings::layout(WindowSettings::tagTableHeader)))
        arrangeAtFirst();
    // The toolkit's own bound, the widest letter of the font, may be wider than the whole dock.
    header->setMinimumSectionSize(leastLetters * m_table->fontMetrics().averageCharWidth());
    updateScrollBar();
    // A restored header shows the mark of the order, but sorts nothing by itself.
    m_table->sortByColumn(header->sortIndicatorSection(), header->sortIndicatorOrder());
}

void TagColumns::arrangeAtFirst()
{
    // In letters of the table's font, so that it fits any resolution.
    constexpr int letters[TagsTableModel::ColumnCount] = {22, 26, 22, 8};
    QHeaderView *header = m_table->horizontalHeader();
    for (int column = 0; column < TagsTableModel::ColumnCount; ++column)
        header->resizeSection(column, letters[column] * m_table->fontMetrics().averageCharWidth());
    header->setSortIndicator(TagsTableModel::NameColumn, Qt::AscendingOrder);
    showNameAlone(true);
}

void TagColumns::save() const
{
    WindowSettings::setLayout(WindowSettings::tagTableHeader, m_table->horizontalHeader()->saveState());
}

bool TagColumns::isNameAlone() const
{
    for (int column = TagsTableModel::DescriptionColumn; column < TagsTableModel::ColumnCount; ++column) {
        if (!m_table->isColumnHidden(column))
            return false;
    }
    return true;
}

void TagColumns::showNameAlone(bool alone)
{
    for (int column = TagsTableModel::DescriptionColumn; column < TagsTableModel::ColumnCount; ++column)
        m_table->setColumnHidden(column, alone);
    updateScrollBar();
}

/** The names alone are stretched to the width of the table, so that there is nothing to scroll to. */
void TagColumns::updateScrollBar()
{
    const bool isAlone = isNameAlone();
    QHeaderView *header = m_table->horizontalHeader();
    // To stretch the last column makes it no narrower than somebody has made it, or it was at first.
    header->setStretchLastSection(!isAlone);
    header->setSectionResizeMode(TagsTableModel::NameColumn,
                                 isAlone ? QHeaderView::Stretch : QHeaderView::Interactive);
    m_table->setHorizontalScrollBarPolicy(isAlone ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
}
