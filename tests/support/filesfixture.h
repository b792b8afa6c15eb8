#pragma once

#include "app/constants.h"
#include "core/file.h"
#include "models/contentsmodel.h"
#include "tests/support/collectionfixture.h"

#include <QSqlDatabase>
#include <QUrl>

/** An open database with short ways to files of each kind, tags and nodes in it. */
class FilesFixture : public CollectionFixture
{
public:
    enum Access { Writable, ReadOnly };

    explicit FilesFixture(Access access = Writable)
    {
        if (access == Writable)
            return;
        // A lock while the database is opened makes the test of writing fail, also for the superuser.
        close();
        lock();
        reopen();
        unlock();
    }

    /** Writes a file with contents of its own into the folder. Its path. */
    QString write(const QString &name)
    {
        QFile file(folder() + QLatin1Char('/') + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(name.toUtf8()) < 0)
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /** Adds one file or link and gives its id. */
    qint64 add(const QUrl &url, const QVector<qint64> &tagIds = {})
    {
        const QList<qint64> before = manager()->files().keys();
        mainView().addUrls({url}, tagIds);
        waitForWorker();
        for (qint64 id : manager()->files().keys()) {
            if (!before.contains(id))
                return id;
        }
        return 0;
    }
    qint64 addExternal(const QString &name, const QVector<qint64> &tagIds = {})
    {
        return add(QUrl::fromLocalFile(write(name)), tagIds);
    }

    /** A node of a tag at the top level of the browsing tree. */
    qint64 addNode(qint64 tagId)
    {
        tree().addNodesBelow({tagId}, 0);
        for (const TBnode *node : manager()->nodes().values()) {
            if (node->tagId() == tagId)
                return node->id();
        }
        return 0;
    }
    /** Shows the files of a node, as a click on it does. */
    void activate(qint64 nodeId)
    {
        QVector<qint64> required;
        QVector<qint64> excluded;
        tree().nodeById(nodeId)->collectTagRequirements(required, excluded);
        tree().nodeActivated(TagNode, nodeId, required, excluded);
    }

    /** Null when the file is not in the database. */
    const File *file(qint64 id) { return manager()->file(id); }

private:
    void lock() const
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, QStringLiteral("lock"));
        database.setDatabaseName(path());
        database.open();
        QSqlQuery(database).exec(QStringLiteral("BEGIN IMMEDIATE"));
    }
    static void unlock()
    {
        QSqlDatabase::database(QStringLiteral("lock")).close();
        QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    }
};
