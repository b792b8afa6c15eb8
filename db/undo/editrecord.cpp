#include "db/undo/editrecord.h"

#include "db/sql/longtext.h"
#include "db/sql/sqltext.h"

#include <algorithm>

namespace {
/** A text that was cut at its reading could not be put back. */
bool isWhole(const RowImage &row)
{
    return std::none_of(row.cbegin(), row.cend(), [](const QVariant &value) {
        return value.type() == QVariant::String && LongText::isTooLong(value.toString());
    });
}
} // namespace

void EditRecord::begin()
{
    m_scopes.clear();
    m_before.clear();
    m_changes = {};
    m_step = {};
    m_isForgotten = false;
    m_isTold = false;
}

bool EditRecord::watch(UndoTable table, const QString &column, const QStringList &values)
{
    if (!m_reader || values.isEmpty())
        return true;
    m_scopes.append({table, column, values});
    return m_reader->read(table, column, values, m_before[table]);
}

bool EditRecord::watch(UndoTable table, const QString &column, const QVector<qint64> &ids)
{
    return watch(table, column, SqlText::idTexts(ids));
}

void EditRecord::added(UndoTable table, const QString &column, const QVector<qint64> &ids)
{
    if (!ids.isEmpty())
        m_scopes.append({table, column, SqlText::idTexts(ids)});
}

void EditRecord::addLinks(const TagLinks &links)
{
    if (!links.fileIds.isEmpty())
        m_changes.links.append(links);
}

void EditRecord::setWords(const QString &name, const QString &outcome)
{
    m_step.name = name;
    m_step.outcome = outcome;
}

bool EditRecord::readAfter(QMap<UndoTable, RowImages> &after)
{
    return std::all_of(m_scopes.cbegin(), m_scopes.cend(), [&](const Scope &scope) {
        return m_reader->read(scope.table, scope.column, scope.values, after[scope.table]);
    });
}

bool EditRecord::finish()
{
    // Within the edit's transaction still: what others write behind it must not count as the edit's work.
    QMap<UndoTable, RowImages> after;
    if (!m_reader || !readAfter(after)) {
        m_isForgotten = true;
        return false;
    }
    for (auto table = after.cbegin(); table != after.cend(); ++table) {
        const RowImages &before = m_before[table.key()];
        // A reading that found no row names no columns.
        const QStringList columns = table->columns.isEmpty() ? before.columns : table->columns;
        const auto keep = [&](const RowImage &old, const RowImage &now) {
            if (old != now)
                m_changes.rows.append({table.key(), columns, old, now});
            return isWhole(old) && isWhole(now);
        };
        bool areWhole = true;
        for (auto row = before.rows.cbegin(); row != before.rows.cend(); ++row)
            areWhole &= keep(row.value(), table->rows.value(row.key()));
        for (auto row = table->rows.cbegin(); row != table->rows.cend(); ++row) {
            if (!before.rows.contains(row.key()))
                areWhole &= keep({}, row.value());
        }
        m_isForgotten = m_isForgotten || !areWhole;
    }
    // In the order of UndoTable, in which rows can be put back behind those that they name.
    const auto byTable = [](const RowChange &left, const RowChange &right) {
        return left.table < right.table;
    };
    std::stable_sort(m_changes.rows.begin(), m_changes.rows.end(), byTable);
    return true;
}

EditStep EditRecord::take()
{
    EditStep step;
    if (!m_changes.isEmpty() || m_isTold) {
        step = m_step;
        if (!m_isForgotten && !m_changes.isEmpty())
            step.edits.append(m_changes);
    }
    begin();
    return step;
}
