#include "models/counts/filecount.h"

#include <QLocale>

FileCount FileCount::outdated(int total)
{
    FileCount count(total);
    count.m_isOutdated = true;
    return count;
}

QString FileCount::text(const QLocale &locale) const
{
    if (!isKnown())
        return {};
    const QString total = locale.toString(m_total);
    //: at the end of a tag's row: how many of its files are shown, and how many it has
    return hasPart() ? tr("%1 of %2").arg(locale.toString(m_shown), total) : total;
}

QString FileCount::spoken(const QString &name) const
{
    if (!isKnown() || m_isOutdated)
        return {};
    const QLocale locale;
    //: what a screen reader says of a tag or a node: its name, and how many files it has
    const QString all = m_total == 1 ? tr("%1, 1 file") : tr("%1, %Ln files", nullptr, m_total);
    //: the same: its name, how many of its files are shown, and how many it has
    const QString part = tr("%1, %2 of %Ln files", nullptr, m_total);
    return hasPart() ? part.arg(name, locale.toString(m_shown)) : all.arg(name);
}
