#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <string>
#include <vector>

class ContentsModel;

/**
 * The files of an open database once more as plain arrays, and the least work that each action on them needs:
 * the references of the window's benchmark. Every function answers a number that hangs on all of the work.
 */
class FlatLibrary
{
public:
    FlatLibrary(const ContentsModel &contents, const QStringList &tagNames);

    int size() const { return static_cast<int>(m_tags.size()); }
    /** A tag on about so many files. */
    qint64 tagOnFiles(int files) const;

    /** Counts every tag of every file: what a selection needs to know its files and its D-Tags. */
    qint64 countTags() const;
    /** Sorts precomputed keys: four characters, and the whole name where these are equal. */
    qint64 sortByNames() const;
    qint64 sortByNumbers() const;
    /** Looks into name, description and id code of every file, without regard to case. */
    qint64 search(const QString &text) const;
    /** Reads the number of every file, as what works on all selected ones has to. */
    qint64 visitAll() const;
    qint64 filterTagNames(const QString &text) const;
    qint64 sortTagNames() const;

private:
    struct NameKey
    {
        quint64 head;
        const QString *name;
    };
    struct Key
    {
        qint64 number;
        qint64 id;
    };

    std::vector<std::vector<qint64>> m_tags;
    QStringList m_texts;
    std::string m_folded; ///< a line a file, name, description and id code
    std::vector<NameKey> m_names;
    std::vector<Key> m_dates;
    QStringList m_tagNames;
};
