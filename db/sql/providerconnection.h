#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

class BaseDBProvider;
class QByteArray;

/**
 * A provider's statements on one connection: for a class that serves the window's thread and the worker's,
 * and is told on which it works. The provider is borrowed and tells of the errors.
 */
class ProviderConnection
{
public:
    /** An empty name means the default connection. */
    explicit ProviderConnection(BaseDBProvider &provider, const QString &name = QString())
        : m_provider(&provider), m_name(name)
    {
    }

    bool run(const QString &statement) const;
    /** For a statement with one placeholder, which takes the blob. */
    bool runWithBlob(const QString &statement, const QByteArray &blob, const QString &placeholder) const;
    /** With "?" for its values; it stays prepared until the provider's clearPrepared(). */
    bool runPrepared(const QString &statement, const QVariantList &values) const;
    /** The same for the first row of the result; false, too, when there is none. */
    bool readRow(const QString &statement, const QVariantList &values, QVariantList &row) const;
    /** The same for all rows, of which there may be none. */
    bool readRows(const QString &statement, const QVariantList &values, QVector<QVariantList> &rows) const;

    /** The same for a statement that comes once and has no values. */
    bool readOnce(const QString &statement, QVector<QVariantList> &rows) const;

private:
    BaseDBProvider *m_provider;
    QString m_name;
};
