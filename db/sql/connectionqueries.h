#pragma once

#include <QSqlQuery>
#include <QString>
#include <QVector>

/**
 * Fixed statements on a connection, for code that has no provider. An empty connection name means the default
 * one; each call belongs to the thread of its connection.
 */
namespace Database {
/**
 * Runs a fixed text and stands on its first row, if there is one. Double quotes around literals become single
 * ones, so nothing that holds a value may come through here.
 */
QSqlQuery execQuery(const QString &connectionName, const QString &statement);

/** The numbers in the first column of a result; nulls and other values are left out. */
QVector<qint64> listResults(const QString &connectionName, const QString &statement);
} // namespace Database
