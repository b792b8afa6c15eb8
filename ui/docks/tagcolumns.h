#pragma once

class QTableView;

/** The columns of the table of tags, which it borrows: which of them show, how wide, sorted by which. */
class TagColumns
{
public:
    explicit TagColumns(QTableView *table) : m_table(table) {}

    /** As they were the last time, at first the names alone. Only with a model in the table, as save(). */
    void restore();
    void save() const;

    bool isNameAlone() const;
    void showNameAlone(bool alone);

private:
    void arrangeAtFirst();
    void updateScrollBar();

    QTableView *m_table;
};
