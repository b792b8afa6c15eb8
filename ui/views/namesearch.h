#pragma once

#include <QElapsedTimer>
#include <QModelIndex>
#include <QString>

/**
 * Finds rows by the first letters of their names while the user types them in a view. The toolkit's own
 * search reads what an item shows, which for a thumbnail is a text that was cut to fit.
 */
class NameSearch
{
public:
    /** The row to go to, in the column of current; invalid when no name begins with what was typed. */
    QModelIndex find(const QAbstractItemModel *model, const QModelIndex &current, const QString &typed,
                     int role);

private:
    QString m_text;
    QElapsedTimer m_sinceLastKey;
};
