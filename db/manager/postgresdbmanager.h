#pragma once

#include "db/manager/databasemanger.h"

class ForeignNews;
class PostgresGeneralProvider;

/**
 * The manager of a database on a server, where others write too. What they change is taken in as it comes
 * (ForeignNews), and an edit of the very same records is dropped with a warning. A server without a journal
 * tells only when others last changed something: when that is news, each edit is dropped, and everything is
 * read anew.
 */
class PostgresDBManager : public DatabaseManger
{
    Q_OBJECT

public:
    PostgresDBManager(const QString &driver, const QString &database, const QString &host,
                      const QString &user, const QString &password, int port, QObject *parent = nullptr);

    QSqlError openDB() override;
    void closeDB() override;
    int dbType() const override;
    /** False: a script sets up a server. */
    bool createDatabase() override;

    /** Never 0 once the trees were loaded. */
    qint64 currentBrowsingTree() const override { return m_currentTree; }
    /**
     * Shows the nodes of a tree, whose list was loaded before: 0 stands for the default tree, and so does,
     * with an error, a tree that is not there.
     */
    void setCurrentBrowsingTree(qint64 treeId) override;
    bool isDataCurrent() override;
    void refreshModificationDate() override;

protected slots:
    void parseAllBrowsTreesInfo(bool ok, const TableData &rows);
    void parseAddedNewBrowsingTree(qlonglong treeId, const QString &name);
    void parseRemovedBrowsingTree(qlonglong treeId);
    void parseUpdatedBrowsingTree(qlonglong treeId, const QString &name);

protected:
    bool beginReading() override;
    void endReading() override;
    QString sharedState() const override { return m_sharedState; }
    void aboutToLoad() override;
    void aboutToCommit(const QDateTime &lastChange) override;
    void noteChange(const QDateTime &change) override;
    bool mayEdit(const EditBase &base) override;
    bool beginEdit(const EditBase &base) override;
    EditEnd endEdit(bool isDone) override;
    void toldEdit() override;
    bool mayTouch(const EditBase &base) override;
    void include(BaseDBProvider *provider) override;

private:
    bool isNews(const QDateTime &change) const;
    void followOthers();
    bool mayMergeNews() const;
    /** By the stamps alone. */
    bool haveOthersWritten();

    PostgresGeneralProvider *m_stamps; ///< the provider of general data
    ForeignNews *m_news;
    bool m_isInEdit = false;    ///< its transaction is open
    bool m_isOperating = false; ///< the worker shows its progress
    qint64 m_currentTree = 0;
    QString m_sharedState;         ///< that another connection may read, while all records are
    QDateTime m_lastModification;  ///< UTC, the change up to which the records are those of the server
    bool m_areStampsNamed = false; ///< own stamps can be told from those of others
    bool m_missesChanges = false;  ///< without names: another client's, made during an operation of our own
};
