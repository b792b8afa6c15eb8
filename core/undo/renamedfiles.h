#pragma once

#include "db/undo/changeset.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

class DatabaseManger;
class FileRenaming;

/**
 * External files, which have their names on the disk, too: renamed there before a step renames their records,
 * and named as before again unless that is done. Lives for one step, on the stack.
 */
class RenamedFiles
{
    Q_DECLARE_TR_FUNCTIONS(RenamedFiles)

public:
    explicit RenamedFiles(DatabaseManger &manager);
    ~RenamedFiles();

    /** An empty text, or why one of them cannot have the other name. */
    QString rename(const EditStep &step, bool isUndo);
    /** The records have followed. */
    void keep();

private:
    QString rename(qint64 fileId, const RowChange &path, bool isUndo);

    DatabaseManger &m_manager;
    std::vector<std::unique_ptr<FileRenaming>> m_renamings;
};
