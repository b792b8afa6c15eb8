#pragma once

class TableView;

/** The columns of the table of files, which it borrows: their places and widths from run to run. */
class FileTableHeader
{
public:
    explicit FileTableHeader(TableView *table) : m_table(table) {}

    void save() const;
    /** Those of the last time, or what fits the usual file. Sorts the table by what comes back. */
    void restore() const;

private:
    TableView *m_table;
};
