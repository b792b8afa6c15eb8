#pragma once

#include <QElapsedTimer>

/**
 * Decides which steps of a long loop are told: those that change the percentage and, between them, one in
 * fifty milliseconds. Each told step crosses threads and paints a window.
 */
class ProgressThrottle
{
public:
    /** True when this step is due; the first always is, and the last when it is named so. */
    bool isDue(int percent, bool isLast = false)
    {
        if (!isLast && percent == m_lastPercent && m_sinceLast.elapsed() < interval)
            return false;
        m_lastPercent = percent;
        m_sinceLast.start();
        return true;
    }

    /** The share of a loop, in single precision, between two marks of the whole. */
    static int percent(int done, int total, int from = 0, int to = 100)
    {
        return total > 0 ? qRound(float(done) / float(total) * float(to - from) + float(from)) : to;
    }

private:
    static constexpr int interval = 50;

    QElapsedTimer m_sinceLast;
    int m_lastPercent = -1;
};
