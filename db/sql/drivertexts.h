#pragma once

#include <QVariant>

class QSqlQuery;

/**
 * Texts that begin with U+FEFF, on their way through Qt's drivers and SQLite: those take it for a mark of the
 * encoding and drop it, while in a name it is a letter like others.
 */
namespace DriverTexts {
/** The value of a column in the query's row, whole. */
QVariant read(const QSqlQuery &query, int column);
/** What is to be bound, so that the value itself arrives. */
QVariant toBind(const QSqlQuery &query, const QVariant &value);
} // namespace DriverTexts
