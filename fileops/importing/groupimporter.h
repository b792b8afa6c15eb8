#pragma once

#include <QCoreApplication>

class ImportRun;

/** Puts the mapped tags into groups of the same names as those of the source, making what is missing. */
class GroupImporter
{
    Q_DECLARE_TR_FUNCTIONS(GroupImporter)

public:
    explicit GroupImporter(ImportRun &run) : m_run(run) {}

    /** Before the transaction. */
    void createTable();
    void importGroups();

private:
    void mapGroups();

    ImportRun &m_run;
};
