#pragma once

#include <QCoreApplication>
#include <QMetaType>

class QLocale;

/** How many files a tag or a node has, and how many of these are among the shown ones. */
class FileCount
{
    Q_DECLARE_TR_FUNCTIONS(FileCount)

public:
    /** Not known. */
    FileCount() = default;
    /** Below 0, the second says that nothing is shown that could tell some files from others. */
    explicit FileCount(int total, int shown = -1) : m_total(total), m_shown(shown) {}
    /** One that may be another one by now, and is being found out. */
    static FileCount outdated(int total);

    bool isKnown() const { return m_total >= 0; }
    bool isOutdated() const { return m_isOutdated; }
    /** As it stands at the end of a row, "12 of 240" or "240"; empty while it is not known. */
    QString text(const QLocale &locale) const;
    /** The same beside a name, for who hears the row. Null while it is not known for sure. */
    QString spoken(const QString &name) const;

private:
    bool hasPart() const { return m_shown >= 0 && m_total > 0; }

    int m_total = -1;
    int m_shown = -1;
    bool m_isOutdated = false;
};

Q_DECLARE_METATYPE(FileCount)
