#pragma once

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <functional>

/** An external file that is not where its record says. */
struct MissingFile
{
    qint64 fileId = 0;
    QString path;
    qint64 size = 0;
    qint64 checksum = 0;
    qint64 modified = 0; ///< seconds since 1970
};

/**
 * Finds missing files in folders and all below them: by their names, and those that no name finds by size and
 * contents: what is recorded of contents may fit other ones, too, so the time of the last change has to fit,
 * or nothing else may. What is hidden is only gone through when one of them was, and links are not followed.
 * One walk serves all of them. The folders are walked in their order, and of several hits the first one
 * counts; none serves two files. Any thread, one at a time, save for freeze().
 */
class FileLocator
{
public:
    /** Asked all the time whether it has to end: what was found until then stands. */
    using ShouldEnd = std::function<bool()>;

    FileLocator(const QVector<MissingFile> &files, const ShouldEnd &shouldEnd);
    /** Takes over what another one has come by, to decide by names alone. */
    explicit FileLocator(const FileLocator &other);
    FileLocator &operator=(const FileLocator &) = delete;

    /**
     * Nothing is taken in from here on, so that others may copy what there is while a walk or a reading that
     * does not come back is left behind.
     */
    void freeze();

    /** Gathers what may be one of the files. */
    void walk(const QStringList &folders);
    /** All that was gathered. */
    QSet<QString> candidates() const;
    /** These are no candidates: the files of other records. */
    void exclude(const QSet<QString> &paths);
    /** Decides. File ids to paths. */
    QHash<qint64, QString> locate();

private:
    struct Hit
    {
        QString path;
        qint64 size;
    };

    void look(const QString &folder, const QString &name);
    void locateByName(const QVector<int> &sameName, const QVector<Hit> &hits);
    void locateByContents();
    void matchContents(const QStringList &paths, qint64 size);
    /** Files and paths of one size and checksum. */
    void matchEqual(QVector<int> files, QStringList paths);
    void settle(int file, const QString &path);
    bool isFree(const QString &path) const;

    QMutex m_mutex; ///< of what is taken in
    bool m_isFrozen = false;
    const QVector<MissingFile> m_files;
    const ShouldEnd m_shouldEnd;
    bool m_withHidden = false;
    QHash<QString, QVector<int>> m_byName;
    QHash<qint64, QVector<int>> m_bySize;
    QHash<QString, QVector<Hit>> m_nameHits;
    QHash<qint64, QStringList> m_sizeHits;
    QSet<QString> m_excluded;
    QSet<QString> m_taken;
    QHash<qint64, QString> m_located;
};
