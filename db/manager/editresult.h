#pragma once

#include <QVector>

#include <functional>

/** What an edit came to. */
struct EditResult
{
    bool isDone = false;
    QVector<qint64> reloadIds; ///< to be read later, when the database was busy after the edit
    std::function<void()>
        tell; ///< gives out its news; without it those of the providers go out in their order
};
