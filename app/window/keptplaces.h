#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QVector>

class QAbstractItemView;
class QWidget;

/**
 * Keeps the rows where they stand in all lists, tables and trees of the window while others come in above
 * them. A view that stands at its top shows what is new there. Owned by the window.
 */
class KeptPlaces : public QObject
{
    Q_OBJECT

public:
    explicit KeptPlaces(QWidget *window);

public slots:
    void note();
    void restore();

private:
    struct Place
    {
        QPointer<QAbstractItemView> view;
        QPersistentModelIndex index;
        int top = 0;
    };

    QWidget *m_window;
    QVector<Place> m_places;
};
