#pragma once

#include "core/records/recordtypes.h"

#include <QString>
#include <QStringList>
#include <QVector>

/** What the auto links ask of the manager that owns them. GUI thread. */
class AutoLinksHost
{
public:
    virtual ~AutoLinksHost() = default;

    /** The file of the database. */
    virtual QString databasePath() const = 0;
    /** False for a database that is read-only. */
    virtual bool mayWrite() const = 0;
    /** Whether the records are those of the database, so that an edit may go ahead. */
    virtual bool isDataCurrent() = 0;
    virtual const Map<qint64, TBnode *> &knownNodes() = 0;
    virtual const Map<qint64, File *> &filesToCompare() = 0;
    /** A box. */
    virtual void tellError(const QString &title, const QString &text) = 0;
    /** A word that goes away by itself. */
    virtual void warn(const QString &text) = 0;
    /** Whether the file of an external record was not there at the last look. */
    virtual bool isFileMissing(qint64 fileId) const = 0;
    /** Files of a linked folder go to the worker, whose outcome has the number; false when they do not. */
    virtual bool autoLinkFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool notifyDuplicates,
                               qint64 requestId) = 0;
    /** Files that may have changed on the disk. */
    virtual void checkExternalFiles(const QVector<qint64> &fileIds) = 0;
};
