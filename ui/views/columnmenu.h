#pragma once

#include <QMenu>

class QHeaderView;

/**
 * Which columns of a table are shown: a menu for other menus, and the context menu of the header, which it
 * borrows. One column always stays.
 */
class ColumnMenu : public QMenu
{
    Q_OBJECT

public:
    ColumnMenu(QHeaderView *header, int lastingColumn, QWidget *parent);

private:
    void fill();

    QHeaderView *m_header;
    int m_lastingColumn;
};
