#pragma once

#include <QStringList>
#include <QVector>

/**
 * The one home of quoting and of filling statement templates. A value reaches a statement through these
 * functions or through a query constructor, and by no other way.
 */
namespace SqlText {
/** The value with each single quote doubled; nothing else is touched. */
QString escaped(const QString &value);

/** The escaped value between single quotes. */
QString quoted(const QString &value);

/**
 * Puts values into the places %1 to %99 of a template in one pass, so that a value which itself holds "%1"
 * stays as it is. A place without a value is left standing. The values are taken as they come: escape or
 * quote them first.
 */
QString fill(const QString &templateText, const QStringList &values);

/** The ids joined with commas, for an IN list of numbers: "1,2,3". */
QString idList(const QVector<qint64> &ids);

/** Each id as text, for the operations that take values. */
QStringList idTexts(const QVector<qint64> &ids);
} // namespace SqlText
