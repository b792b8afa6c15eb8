#pragma once

#include "db/sql/gatheredrows.h"
#include "fileops/worker/fileoperationworker.h"

/** The worker of a database on a server, where other clients write at the same time. */
class PostgresFileOperationWorker : public FileOperationWorker
{
    Q_OBJECT

public:
    using FileOperationWorker::FileOperationWorker;

    /** Takes keys from the server in growing numbers, as each question costs as much as a row. */
    bool nextId(const QString &table, const QString &column, qint64 &id) override;
    /** Puts the link into the tree that is shown. */
    bool insertBrowsingNodeLink(qint64 parentId, qint64 childId) override;
    /**
     * Emits aboutToCommit first: what others changed during a long operation would else pass for its own, as
     * the window takes the time of its latest change for the state that it knows.
     */
    bool commitTransaction(const QString &connectionName) override;
    void setPatient(bool isPatient) override;
    bool holdTags() override;
    bool gathersRows() const override { return true; }
    bool insertRows(const QString &into, int columns, const QVariantList &values) override;
    void beginRows() override;
    bool writeRows() override;
    void dropRows() override;
    bool areRowsWaiting() const override { return m_areRowsWaiting; }

protected:
    void prepareConnection() override;

private:
    struct Keys
    {
        QVector<qint64> ids; ///< nobody else gets them
        int used = 0;
    };
    QDateTime readLastChange();
    bool takeKeys(const QString &table, const QString &column, Keys &keys);

    QDateTime m_ownChange;
    QHash<QString, Keys> m_keys; ///< by table, for the life of a connection
    GatheredRows m_rows;
    bool m_areRowsWaiting = false;
};
