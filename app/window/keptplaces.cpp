#include "app/window/keptplaces.h"

#include <QAbstractItemView>
#include <QScrollBar>

#include <utility>

KeptPlaces::KeptPlaces(QWidget *window) : QObject(window), m_window(window) {}

void KeptPlaces::note()
{
    m_places.clear();
    const QList<QAbstractItemView *> views = m_window->findChildren<QAbstractItemView *>();
    for (QAbstractItemView *view : views) {
        const QScrollBar *bar = view->verticalScrollBar();
        if (!view->isVisible() || bar->value() == bar->minimum())
            continue;
        // Behind the margin and the space between pictures.
        const QModelIndex index = view->indexAt(view->viewport()->rect().topLeft() + QPoint(12, 12));
        if (index.isValid())
            m_places.append({view, index, view->visualRect(index).top()});
    }
}

void KeptPlaces::restore()
{
    const QVector<Place> places = std::exchange(m_places, {});
    for (const Place &place : places) {
        const int top =
            place.view && place.index.isValid() ? place.view->visualRect(place.index).top() : place.top;
        if (top == place.top)
            continue;
        QScrollBar *bar = place.view->verticalScrollBar();
        if (place.view->verticalScrollMode() == QAbstractItemView::ScrollPerPixel)
            bar->setValue(bar->value() + top - place.top);
        else
            place.view->scrollTo(place.index, QAbstractItemView::PositionAtTop);
    }
}
