#pragma once

#include <QStringList>

/**
 * The copies of internal files that this run of the program has put into the folder for temporary files. They
 * go with this object, of which the entry function has one, unless somebody has changed them since: then they
 * are that person's work. Each run writes its copies down in a locked file, ".vorna-N.copies", so that the
 * next one can remove those of a run that broke off. The static functions may be called from any thread, and
 * do nothing without the object.
 */
class TemporaryCopies
{
public:
    TemporaryCopies();
    ~TemporaryCopies();
    TemporaryCopies(const TemporaryCopies &) = delete;
    TemporaryCopies &operator=(const TemporaryCopies &) = delete;

    /** A new file that is about to be filled. */
    static void noteBegun(const QString &path);
    /** A copy as it stands now. */
    static void noteWritten(const QString &path);
    /** A folder for copies, which goes when it is empty by then. */
    static void noteFolder(const QString &path);
    /** Removes copies that nobody needs any more, and their folder when it is empty then. */
    static void remove(const QStringList &paths, const QString &folder);
    /** Removes what runs that broke off have left. */
    static void removeLeftovers();
};
