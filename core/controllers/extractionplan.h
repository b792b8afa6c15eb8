#pragma once

#include "core/controllers/fileconflict.h"

#include <QHash>
#include <QSet>
#include <QStringList>

/**
 * What an extraction into a folder comes to: which files go where, which are there already, and about which
 * the user has to be asked. Holds values only, so that records may come and go meanwhile. GUI thread.
 */
class ExtractionPlan
{
public:
    /** A file of the database that has contents. */
    struct Source
    {
        qint64 fileId = 0;
        QString name;
        QString path; ///< of an external file
        qint64 size = 0;
        qint64 checksum = 0;
    };
    /** Asked often; true ends the reading. */
    using ShouldEnd = std::function<bool()>;

    ExtractionPlan(const QString &folder, const QVector<Source> &sources);

    /**
     * Compares the files with what stands in the folder, which is read where the sizes are equal. False when
     * the reading was ended; the plan is of no use then.
     */
    bool compare(const ShouldEnd &shouldEnd);
    const QVector<FileConflict> &conflicts() const { return m_conflicts; }
    /** Decides about a conflict by a MiscOperationThread::NameChoice; without a call its file is left out. */
    void settle(qint64 fileId, int choice);

    // The outcome, file by file.
    const QVector<qint64> &fileIds() const { return m_fileIds; }
    const QStringList &targetPaths() const { return m_targetPaths; }
    /** Those targets where another file gives way. */
    const QSet<QString> &replacedPaths() const { return m_replacedPaths; }
    /** Those where by size and checksum the file itself stands; whoever has its bytes can tell. */
    const QSet<QString> &comparedPaths() const { return m_comparedPaths; }

private:
    enum State { Free, Present, Alike, Unread, Conflict };

    QString pathOf(const QString &name) const;
    State lookAt(const Source &source);
    bool readPresent(QVector<State> &states, const ShouldEnd &shouldEnd) const;
    void addConflict(const Source &source);
    void addTarget(qint64 fileId, const QString &path);

    QString m_folder;
    QVector<Source> m_sources;
    QHash<QString, int> m_given;   ///< names that files of this extraction get, to the places of those
    QHash<QString, int> m_numbers; ///< where the search for a free name goes on
    QVector<FileConflict> m_conflicts;
    QVector<qint64> m_fileIds;
    QStringList m_targetPaths;
    QSet<QString> m_replacedPaths;
    QSet<QString> m_comparedPaths;
};
