#pragma once

#include <QElapsedTimer>
#include <QString>

#include <functional>

/**
 * Finds rows by the first letters of their names while the user types them in a view. The toolkit's own
 * search reads what an item shows, which for a thumbnail is a text that was cut to fit, and takes seconds for
 * a million rows.
 */
class NameSearch
{
public:
    using NameAt = std::function<QString(int row)>;

    void setNames(const NameAt &nameAt) { m_nameAt = nameAt; }
    bool hasNames() const { return bool(m_nameAt); }

    /** The row to go to, -1 when no name begins with what was typed. Current is -1 for none. */
    int find(int rowCount, int current, const QString &typed);

private:
    NameAt m_nameAt;
    QString m_text;
    QElapsedTimer m_sinceLastKey;
};
