#pragma once

#include "db/databasemanger.h"

#include <QFileSystemWatcher>

/** The manager of one local database file. Nobody else's change is expected in it. */
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

private:
    bool makeTables(const QString &connectionName);

    QFileSystemWatcher *m_folderWatcher;
    bool m_closing = false;
};
