#pragma once

#include <QSet>
#include <QString>

/**
 * Lets equal texts of many records share one block of memory: a folder of 10,000 files stands in memory once.
 * The pool drops texts that nobody uses any more when it has grown to twice what was in use. One thread only.
 */
class TextPool
{
public:
    /** A string equal to the text, shared with all earlier ones. */
    QString share(QStringView text);

    int size() const { return m_texts.size(); }

private:
    void dropUnused();

    QSet<QString> m_texts;
    QString m_last;
    int m_limit = 4096;
};
