#pragma once

#include "fileops/looks/backgroundlooks.h"
#include "fileops/tracking/filelocator.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

class ContentsModel;

/**
 * A search for missing files in folders, beside the window. Files that other records stand for are left
 * to them. GUI thread; the model of all files must outlive it.
 */
class FileLocation : public QObject
{
    Q_OBJECT

public:
    FileLocation(const ContentsModel &contents, const QVector<qint64> &fileIds, const QStringList &folders,
                 QObject *parent = nullptr);
    /** Ends the search, and leaves behind what does not come back at once. */
    ~FileLocation() override;

    void start();
    /** Ends it early, at once: what it has come by so far stands. */
    void finish();
    /** File ids to paths, once it has finished. */
    QHash<qint64, QString> located() const { return m_located; }

    /** Whether an external file other than the given one has this path. */
    static bool isOfAnother(const ContentsModel &contents, const QString &path, qint64 fileId);

signals:
    void finished();

private:
    void gatherCandidates();
    void beginExcluding();
    void excludeSlice();
    void excludeRows(int end);

    const ContentsModel &m_contents;
    const QStringList m_folders;
    const std::shared_ptr<std::atomic<bool>> m_isCanceled = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<FileLocator> m_locator;
    QSet<qint64> m_fileIds;
    QSet<QString> m_candidates;
    QSet<QString> m_candidateNames;
    QTimer m_sliceTimer;
    int m_nextRow = 0;
    QHash<qint64, QString> m_located;
    BackgroundLooks m_looks;
};
