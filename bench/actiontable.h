#pragma once

#include <QString>

#include <functional>

class OpenWindow;

/** An action and its reference, both measured one after the other; prepare comes before them and is not. */
struct Action
{
    QString name;
    std::function<void()> prepare;
    std::function<void()> act;
    std::function<void()> reference;
};

/** Runs actions in the window some rounds each and prints a line of medians for each. */
class ActionTable
{
public:
    /** Only actions with a text in their name are run. */
    ActionTable(OpenWindow &window, int rounds, const QString &only);

    void run(const Action &action);

private:
    OpenWindow &m_window;
    int m_rounds;
    QString m_only;
};
