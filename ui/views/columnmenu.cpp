#include "ui/views/columnmenu.h"

#include <QHeaderView>

ColumnMenu::ColumnMenu(QHeaderView *header, int lastingColumn, QWidget *parent)
    : QMenu(tr("Columns"), parent), m_header(header), m_lastingColumn(lastingColumn)
{
    setObjectName(QStringLiteral("columnMenu"));
    connect(this, &QMenu::aboutToShow, this, &ColumnMenu::fill);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &place) { exec(m_header->mapToGlobal(place)); });
}

void ColumnMenu::fill()
{
    clear();
    // In the order in which they stand, as the user may have moved them.
    for (int place = 0; place < m_header->count(); ++place) {
        const int column = m_header->logicalIndex(place);
        QAction *action = addAction(m_header->model()->headerData(column, Qt::Horizontal).toString());
        action->setCheckable(true);
        action->setChecked(!m_header->isSectionHidden(column));
        action->setEnabled(column != m_lastingColumn);
        connect(action, &QAction::toggled, this, [this, column](bool isShown) {
            m_header->setSectionHidden(column, !isShown);
            // One that was hidden from the first comes without a width.
            if (isShown && m_header->sectionSize(column) == 0)
                m_header->resizeSection(column, m_header->defaultSectionSize());
        });
    }
}
