#pragma once

#include <QMetaType>
#include <QSqlError>
#include <QString>
#include <QVector>

/** What is told at the end of an operation that did not do all it was asked for. */
struct OperationShortfall
{
    QVector<QSqlError> errors; ///< the first of each cause; none after a cancel
    QString outcome;           ///< how far it came, a sentence; empty when nobody waits for that
};
Q_DECLARE_METATYPE(OperationShortfall)
