#pragma once

#include <QCoreApplication>

class ContentComparison;
class ImportRun;

/**
 * The files of the source in the temporary table `mem_files`: those whose numbers are numbers, with a
 * checksum for each whose contents can be read. Its `fate` says what is to become of each.
 */
class SourceFiles
{
    Q_DECLARE_TR_FUNCTIONS(SourceFiles)

public:
    enum Fate {
        IsNew = 0,  ///< to be added
        IsKnown = 1 ///< stands for itself in a group that has a file here, or another one that is added
    };

    explicit SourceFiles(ImportRun &run) : m_run(run) {}

    /** Before the transaction. */
    void createTables();
    void read();
    /** Computes the checksums that the source lacks. */
    void fillChecksums(const ContentComparison &contents);
    /** By checksum and size, once the checksums stand. */
    void createIndex();

private:
    ImportRun &m_run;
};
