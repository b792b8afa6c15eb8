#pragma once

#include "models/completion/nameindex.h"

#include <QAbstractListModel>
#include <QSet>

/**
 * What is offered for a text that is being typed: the names in which it stands, and behind them, unless one
 * is just this, the text as the name of a new tag, which is marked as such. GUI thread.
 */
class CompletionModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1, ///< 0 for a new name
        NameRole,                  ///< without any mark
        KeyRole                    ///< the key that the tag has of its own
    };

    explicit CompletionModel(QObject *parent = nullptr) : QAbstractListModel(parent) {}

    NameIndex &index() { return m_index; }
    const NameIndex &index() const { return m_index; }
    using QAbstractListModel::index;
    /** By the ids of tags. */
    void setKeys(const QHash<qint64, QString> &keys) { m_keys = keys; }
    /** Offers what fits the text, but for tags that are taken already. */
    void complete(const QString &text, const QSet<qint64> &takenIds);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    NameIndex m_index;
    QHash<qint64, QString> m_keys;
    QVector<int> m_rows; ///< places in the index
    QString m_newName;   ///< behind them, empty for none
};
