#pragma once

#include <QCoreApplication>
#include <QString>

/** What happened, when a handler of all exceptions asks. */
class CaughtError
{
    Q_DECLARE_TR_FUNCTIONS(CaughtError)

public:
    /** The sentence for the exception that is being handled. */
    static QString text();
};
