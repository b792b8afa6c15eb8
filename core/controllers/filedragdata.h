#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QPointer>
#include <QStringList>
#include <QVector>

class DatabaseManger;
class File;

/**
 * A drag of files: their ids for this program, and their URLs for others. External files are offered where
 * they lie, internal ones as copies in a folder of their own for temporary files. A program that a drag only
 * passes gets the URLs of copies that nobody has made yet, where passing can be told from dropping; they are
 * made once. After a drop they stay there until the end of the program, as nobody tells when the other one
 * has read them. GUI thread.
 */
class FileDragData : public QMimeData
{
    Q_OBJECT

public:
    /** The manager is borrowed, and may go before. */
    FileDragData(const QVector<const File *> &files, DatabaseManger *manager);

    /** Present among the formats when some of the URLs are those of copies. */
    static const QString copiesFormat;

    QStringList formats() const override;
    /** While the drag is known to hover, a request for URLs makes no copies; at first it is not known. */
    void setHovering(bool isHovering) { m_isHovering = isHovering; }
    /**
     * Makes the promised copies, unless they are made; the event loop runs meanwhile, without input. False
     * when they cannot be had. This object may be gone then.
     */
    bool makeCopies() const;
    /** Once the drag has ended and no other program got it. */
    void removeCopies();

protected:
    QVariant retrieveData(const QString &format, QVariant::Type type) const override;

private:
    enum State { Unasked, Promised, Ordered, Made, Failed };

    void promise() const;
    void order() const;
    bool areComplete() const;

    QVector<qint64> m_fileIds;
    QPointer<DatabaseManger> m_manager;
    bool m_isOffered = false;
    bool m_hasCopies = false;
    bool m_isHovering = false;
    // Settled at the first request, which most drags never see.
    mutable State m_state = Unasked;
    mutable QByteArray m_urls;
    mutable QString m_folder;
    mutable QVector<qint64> m_copiedIds;
    mutable QStringList m_copies;
    mutable QVector<qint64> m_sizes;
};
