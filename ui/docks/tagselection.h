#pragma once

#include <QVector>

class TableView;

/**
 * The tags that are selected in the table of tags, which it borrows. It can note them by their ids before all
 * rows are read again, and select them again afterwards, as far as they are still there.
 */
class TagSelection
{
public:
    explicit TagSelection(TableView *table) : m_table(table) {}

    /** The selected rows from top to bottom. */
    QVector<int> rows() const;
    QVector<qint64> tagIds() const;

    void remember();
    void bringBack();

    /** Makes a tag the current one and brings it into sight; the selection stays. Nothing when it is hidden.
     */
    void show(qint64 tagId);

private:
    qint64 tagAt(int row) const;
    int rowOf(qint64 tagId) const;

    TableView *m_table;
    QVector<qint64> m_rememberedTags;
    qint64 m_rememberedCurrent = 0;
    int m_rememberedScroll = 0;
};
