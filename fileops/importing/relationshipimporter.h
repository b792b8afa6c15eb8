#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QPair>
#include <QSet>
#include <QStringList>
#include <QVector>

class ImportRun;

/**
 * Merges the trees of tag relationships. A tree of the source whose topmost tag stands somewhere in the open
 * database already joins it there, at each of its places; others come as they are.
 */
class RelationshipImporter
{
    Q_DECLARE_TR_FUNCTIONS(RelationshipImporter)

public:
    explicit RelationshipImporter(ImportRun &run) : m_run(run) {}

    void importRelationships();

private:
    using Path = QVector<qint64>;

    void readTags();
    void readExisting();
    void importPath(const QString &text);
    /** False for a text that is no path. */
    bool readPath(const QString &text, Path &components) const;
    /** Gives a tag that has got a new place the tags that it has below it at its other ones. */
    void addBelow(const QString &place, qint64 tagId);
    void add(const QString &path);
    Path mapped(const Path &components) const;
    void addWithPrefixes(const Path &path);

    ImportRun &m_run;
    QHash<qint64, qint64> m_newTagIds;
    QSet<QString> m_known;                       ///< paths of the open database, and what was added
    QHash<qint64, QStringList> m_places;         ///< of each tag, before the import
    QVector<QPair<QString, qint64>> m_newPlaces; ///< of tags that had others
    QStringList m_sorted;                        ///< all paths but those that come with the new places
    int m_addedBelow = 0;
};
