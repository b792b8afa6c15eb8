#pragma once

#include <QCoreApplication>
#include <QString>

class ImportRun;

/**
 * Finds for each tag of the source the tag of the same name, or makes it, and notes the pairs in
 * `migrationDB_tags`, which all that hangs on tags goes by.
 */
class TagImporter
{
    Q_DECLARE_TR_FUNCTIONS(TagImporter)

public:
    explicit TagImporter(ImportRun &run) : m_run(run) {}

    /** Before the transaction. */
    void createTable();
    void importTags();
    /** Only those of files that stand in mem_external_file_group, as files of both sides. */
    void importTagsOfCommonFiles();

private:
    void importFrom(const char *tagsCondition);
    void importTag(qint64 oldId, const QString &name, qint64 date, qint64 newId);

    ImportRun &m_run;
};
