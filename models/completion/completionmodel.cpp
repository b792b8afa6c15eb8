#include "models/completion/completionmodel.h"

#include "app/settings/showntext.h"

#include <QIcon>

#include <algorithm>

void CompletionModel::complete(const QString &text, const QSet<qint64> &takenIds)
{
    // Rows of one text have nothing to do with those of the next, so that views begin anew.
    beginResetModel();
    m_rows = m_index.find(text);
    const auto isTaken = [&](int place) { return takenIds.contains(m_index.at(place).id); };
    // In place: a short text is found in most of a hundred thousand names.
    m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), isTaken), m_rows.end());
    // As a new tag would be stored. Only the very name, letter case included, is one that exists.
    const QString name = text.simplified();
    m_newName = m_index.idOf(name) == 0 ? name : QString();
    endResetModel();
}

int CompletionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size() + (m_newName.isEmpty() ? 0 : 1);
}

QVariant CompletionModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const bool isNew = index.row() >= m_rows.size();
    const qint64 id = isNew ? 0 : m_index.at(m_rows.at(index.row())).id;
    const QString name = isNew ? m_newName : m_index.at(m_rows.at(index.row())).name;
    switch (role) {
    case Qt::DisplayRole:
        if (isNew)
            return tr("New tag \"%1\"").arg(ShownText::cut(name));
        // Cut here alone: NameRole is what is taken, and may be of any length.
        return m_keys.contains(id) ? tr("%1   (%2)").arg(ShownText::cut(name), m_keys.value(id))
                                   : ShownText::cut(name);
    case Qt::DecorationRole:
        return isNew ? QVariant(QIcon(QStringLiteral(":/icons/add.png"))) : QVariant();
    case IdRole:
        return id;
    case NameRole:
        return name;
    case KeyRole:
        return m_keys.value(id);
    default:
        return {};
    }
}
