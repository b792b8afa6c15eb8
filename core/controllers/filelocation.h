#pragma once

#include "fileops/tracking/filelocator.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

class ContentsModel;
class QThread;

/**
 * A search for missing files in folders, on a thread of its own. Files that other records stand for are left
 * to them. GUI thread; the model of all files must outlive it.
 */
class FileLocation : public QObject
{
    Q_OBJECT

public:
    FileLocation(const ContentsModel &contents, const QVector<qint64> &fileIds, const QStringList &folders,
                 QObject *parent = nullptr);
    /** Ends the search and waits for that. */
    ~FileLocation() override;

    void start();
    /** Ends it early, at once: what the walk has come by so far stands. */
    void finish();
    /** File ids to paths, once it has finished. */
    QHash<qint64, QString> located() const { return m_located; }

    /** Whether an external file other than the given one has this path. */
    static bool isOfAnother(const ContentsModel &contents, const QString &path, qint64 fileId);

signals:
    void finished();

private:
    void run(void (FileLocation::*step)(), void (FileLocation::*next)());
    void walk();
    void gatherCandidates();
    void beginExcluding();
    void excludeSlice();
    void excludeRows(int end);
    void decide();
    void end();

    const ContentsModel &m_contents;
    const QStringList m_folders;
    std::atomic<bool> m_isCanceled{false};
    std::unique_ptr<FileLocator> m_locator;
    std::unique_ptr<QThread> m_thread;
    QSet<qint64> m_fileIds;
    QSet<QString> m_candidates;
    QSet<QString> m_candidateNames;
    QTimer m_sliceTimer;
    int m_nextRow = 0;
    QHash<qint64, QString> m_located;
    bool m_isDecided = false;
};
