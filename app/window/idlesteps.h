#pragma once

#include <QObject>
#include <QScopedValueRollback>

#include <functional>

/**
 * Runs what replaces or closes the open database from the event loop, once nothing is in the middle of using
 * it: a box, a menu or a drag that is open runs a loop of its own above objects that a close would delete.
 * Owned by the window.
 */
class IdleSteps : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Around a step that goes on with the collection after a loop of its own: no other runs meanwhile. */
    class Hold
    {
    public:
        explicit Hold(IdleSteps *steps) : m_held(steps->m_isHeld, true) {}

    private:
        const QScopedValueRollback<bool> m_held;
    };

    void run(const std::function<void()> &step);

private:
    void runAfter(int milliseconds, const std::function<void()> &step);

    bool m_isHeld = false;
};
