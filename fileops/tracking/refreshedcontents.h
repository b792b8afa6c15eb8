#pragma once

#include <QHash>
#include <QObject>

/**
 * The files whose new contents were written into their records while a database is open. A file that was
 * changed before that, too, has changed along with them and is no copy that came later, in whatever batch or
 * check it is met. It lives and dies with a worker. Worker's thread.
 */
class RefreshedContents : public QObject
{
    Q_OBJECT

public:
    static RefreshedContents &of(QObject &worker);

    void add(qint64 fileId);
    /** Whether the file at the path may have changed before that record was written: in doubt, it has. */
    bool mayBeOlder(qint64 refreshedId, const QString &path) const;

private:
    explicit RefreshedContents(QObject *parent) : QObject(parent) {}

    QHash<qint64, qint64> m_times; ///< milliseconds since 1970
};
