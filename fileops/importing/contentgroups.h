#pragma once

#include "fileops/importing/contentcomparison.h"

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QVector>

class ImportRun;

/**
 * Finds out which files of the source and of the open database have the same contents. An equal checksum only
 * nominates: size and, where both sides can be read, bytes decide, texts between hyperlinks. The groups stand
 * in `mem_groups`, `mem_external_file_group` (files of the source) and `mem_internal_file_group` (of the open
 * database); of a group without one of those, the file that is worth keeping stays to be added.
 * What matches by its contents nothing here, but is an external file whose path is recorded here, is the file
 * of that record: it has changed since, or nobody could read it.
 */
class ContentGroups
{
    Q_DECLARE_TR_FUNCTIONS(ContentGroups)

public:
    /** `isAdding` says that files are to come over, and not only what is known of those on both sides. */
    ContentGroups(ImportRun &run, const ContentComparison &contents, bool isAdding)
        : m_run(run), m_contents(contents), m_isAdding(isAdding)
    {
    }

    /** Before the transaction. */
    static void createTables(ImportRun &run);
    void group();
    /** Notes the added file of each group beside the others, once files are in `mem_added`. */
    static void noteAdded(ImportRun &run);

private:
    struct File
    {
        bool isOfSource = false;
        qint64 fileId = 0;
        qint64 kind = 0;
        qint64 storageId = 0;
    };
    /** Files of equal contents; the first of each kind stands for them. */
    struct Group
    {
        QVector<File> files;
        File internal;
        bool hasInternal = false;
        int ofSource = 0;
    };
    struct Contents
    {
        qint64 checksum = -1;
        qint64 size = 0;
    };

    void nominate();
    void findPathOwners();
    void joinPathOwners();
    qint64 pathOwner(const File &file);
    void take(const File &file, const Contents &contents);
    void settle();
    void writeKnown(const Group &group);
    void write(const QVector<File> &files);
    void keepOne(Group &group);
    void writePair(qint64 fileId, qint64 ownFileId);
    int placeOf(const File &file);
    QByteArray identity(const File &file);
    bool fits(const Group &group, const File &file);
    bool isSame(const File &one, const File &other);
    ContentComparison::Side sideOf(const File &file);
    QString textOf(const File &file, const char *column);
    QString pathOf(const File &file);

    ImportRun &m_run;
    const ContentComparison &m_contents;
    const bool m_isAdding;
    Contents m_current;
    QVector<Group> m_groups;                   ///< of the current checksum and size
    QHash<QByteArray, int> m_placesByIdentity; ///< of those groups that files are not compared with
    qint64 m_lastGroup = 0;
};
