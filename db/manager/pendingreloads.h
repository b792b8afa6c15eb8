#pragma once

#include <QMap>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVector>

/**
 * Rows that were to be read again while another connection held the database locked. They are asked for once
 * more a little later, so that what the worker stored is shown even when the first look failed. GUI thread.
 */
class PendingReloads : public QObject
{
    Q_OBJECT

public:
    enum Kind { TagReload, GroupReload, NodeReload, FileReload, FullReload, ThumbnailReload };

    /** A try may stand at a locked database for a moment: with pauses between, the window stays usable. */
    static constexpr int retryMilliseconds = 800;

    explicit PendingReloads(QObject *parent = nullptr);

    bool isWaiting() const { return m_timer.isActive(); }

    void add(int kind, const QVector<qint64> &ids);
    /** Forgets all, for a database that closes. */
    void clear();

signals:
    /** The ids are no longer kept: they come back by add() when the database is busy still. */
    void due(int kind, QVector<qint64> ids);

private:
    void handOut();

    QMap<int, QSet<qint64>> m_ids;
    QTimer m_timer;
};
