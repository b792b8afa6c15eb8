#include "ui/views/filetableheader.h"

#include "app/settings/windowsettings.h"
#include "models/contents/contentsmodel.h"
#include "ui/widgets/fontscale.h"
#include "ui/widgets/tableview.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLocale>

namespace {
constexpr int nameColumnWidth = 250;
constexpr int columnMargin = 24;
} // namespace

void FileTableHeader::save() const
{
    WindowSettings::setLayout(WindowSettings::fileTableHeader, m_table->horizontalHeader()->saveState());
}

void FileTableHeader::restore() const
{
    QHeaderView *header = m_table->horizontalHeader();
    const QByteArray state = WindowSettings::layout(WindowSettings::fileTableHeader);
    if (state.isEmpty() || !header->restoreState(state)) {
        header->setSortIndicator(-1, Qt::AscendingOrder);
        header->resizeSection(ContentsModel::NameColumn, FontScale::byFont(nameColumnWidth, m_table));
        const QDateTime longDate({2000, 12, 28}, {22, 58, 58});
        const QString text = QLocale().toString(longDate, QLocale::ShortFormat);
        const int width = m_table->fontMetrics().horizontalAdvance(text) + columnMargin;
        header->resizeSection(ContentsModel::ModificationDateColumn, width);
        header->resizeSection(ContentsModel::AdditionDateColumn, width);
    }
    header->setSectionsMovable(true);
}
