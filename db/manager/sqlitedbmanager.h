#pragma once

#include "db/manager/databasemanger.h"

#include <QFileSystemWatcher>

class ForeignWrites;
class ReadBound;

/**
 * The manager of one local database file. Nobody else's change is expected in it; when another program has
 * made one, the next edit is dropped with a warning and everything is read anew.
 */
class SQLiteDBManager : public DatabaseManger
{
    Q_OBJECT

public:
    SQLiteDBManager(const QString &driver, const QString &database, const QString &host, const QString &user,
                    const QString &password, int port, QObject *parent = nullptr);
    ~SQLiteDBManager() override;

    QSqlError openDB() override;
    void closeDB() override;
    int dbType() const override;
    /** Makes the file and its tables; an empty file stays behind when that fails half-way. */
    bool createDatabase() override;

    qint64 currentBrowsingTree() const override;
    void setCurrentBrowsingTree(qint64 treeId) override;
    bool isDataCurrent() override;
    void refreshModificationDate() override;

protected slots:
    void folderContentChanged(const QString &path);

protected:
    QString connectOptions() const override;
    void readReadOnlyState() override;
    /** In a transaction, so that all records belong to one state, and nobody locks the file half-way. */
    bool beginReading() override;
    bool mayRequest() override { return isReadyForEdits(); }
    void endReading() override;

private:
    bool makeTables(const QString &connectionName);

    ForeignWrites *m_foreignWrites;
    std::unique_ptr<ReadBound> m_readBound; ///< while all records are read
    QFileSystemWatcher *m_folderWatcher;
    bool m_closing = false;
};
