#pragma once

#include <QCoreApplication>
#include <QString>

/**
 * Decides which texts are kept as hyperlinks. What it refuses is counted, so that one sentence can tell of a
 * whole drop.
 */
class HyperlinkCheck
{
    Q_DECLARE_TR_FUNCTIONS(HyperlinkCheck)

public:
    enum Fault { NoFault, Empty, LocalFile, TooLong, ControlSigns, NoAddress, FaultCount };

    static Fault faultOf(const QString &text);
    /** A sentence that tells why this text is refused; empty when it is not. */
    static QString reason(const QString &text);

    /** True for a text that may be kept. */
    bool accepts(const QString &text);
    /** How many were refused, and a line for each reason; empty when nothing was. */
    QString report() const;

private:
    static QString line(Fault fault, int count);

    int m_counts[FaultCount] = {};
};
