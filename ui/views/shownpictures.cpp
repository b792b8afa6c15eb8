#include "ui/views/shownpictures.h"

#include <QEvent>
#include <QHeaderView>
#include <QListView>
#include <QTableView>

ShownPictures::ShownPictures(QListView *list, QTableView *table, QObject *parent)
    : QObject(parent), m_list(list), m_table(table)
{
    for (QAbstractItemView *view :
         {static_cast<QAbstractItemView *>(list), static_cast<QAbstractItemView *>(table)})
        view->viewport()->installEventFilter(this);
}

bool ShownPictures::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        const bool isList = watched == m_list->viewport();
        emit aboutToShow(countIn(isList ? static_cast<QAbstractItemView *>(m_list) : m_table));
    }
    return QObject::eventFilter(watched, event);
}

int ShownPictures::countIn(const QAbstractItemView *view) const
{
    constexpr int cutRows = 2; // at the top and at the bottom
    const QSize room = view->viewport()->size();
    const bool isList = view == m_list;
    const int columns = isList ? qMax(1, room.width() / m_list->gridSize().width()) : 1;
    const int height = isList ? m_list->gridSize().height() : m_table->verticalHeader()->defaultSectionSize();
    const int rows = view->model() ? view->model()->rowCount() : 0;
    return qMin(rows, columns * (room.height() / height + cutRows));
}
