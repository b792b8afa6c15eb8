#pragma once

#include "app/constants.h"
#include "app/messages.h"
#include "core/collection.h"
#include "db/databasemanger.h"
#include "tests/support/settingssandbox.h"

#include <QFile>
#include <QSettings>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/**
 * A new local database in a folder of its own, opened and loaded as the window does it, with settings of its
 * own. Boxes are noted and answered by a button. All goes with the object.
 */
class CollectionFixture
{
public:
    CollectionFixture()
    {
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes.append(box.title.isEmpty() ? box.text : box.title + QLatin1String(": ") + box.text);
            return Messages::Answer{m_button, -1};
        });
        make();
        m_isReady = placeEmptyDatabase();
        openAndLoad();
    }
    ~CollectionFixture()
    {
        m_collection.reset();
        Messages::setResponder({});
    }
    CollectionFixture(const CollectionFixture &) = delete;
    CollectionFixture &operator=(const CollectionFixture &) = delete;

    bool isReady() const { return m_isReady; }
    Collection &collection() { return *m_collection; }
    DatabaseManger &manager() { return *m_collection->findChild<DatabaseManger *>(); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /** Closes the database and opens it again, as after a restart of the program. */
    void reopen()
    {
        close();
        make();
        openAndLoad();
    }
    void close() { m_collection.reset(); }

    void answerBoxesWith(QMessageBox::StandardButton button) { m_button = button; }
    /** The boxes shown since the last call, as "title: text" or as their text alone. */
    QStringList takeBoxes()
    {
        QStringList boxes;
        boxes.swap(m_boxes);
        return boxes;
    }

    static void set(const char *key, const QVariant &value)
    {
        QSettings().setValue(QString::fromLatin1(key), value);
    }

    /** Makes tags of these names and gives their ids. */
    QVector<qint64> addTags(const QStringList &names)
    {
        QVector<qint64> ids;
        for (const QString &name : names)
            ids.append(manager().addTag(name));
        return ids;
    }

    void waitForWorker()
    {
        QVERIFY(QTest::qWaitFor([this] { return !manager().isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    /** The rows of a query, each with its values between bars. */
    QStringList rows(const QString &statement) const
    {
        QSqlQuery query(statement);
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }

private:
    /** Made by the program once a process, then copied: making one waits for the disk table by table. */
    bool placeEmptyDatabase()
    {
        static QByteArray bytes;
        QFile file(m_collection->databaseName());
        if (bytes.isEmpty() && m_collection->createDatabase() && file.open(QIODevice::ReadOnly))
            bytes = file.readAll();
        file.close();
        return !bytes.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    void make()
    {
        m_collection.reset(makeCollection(Constants::localDatabase, QString(),
                                          path(QStringLiteral("test.vrn")), QString(), QString(), 0));
    }
    void openAndLoad()
    {
        const QSqlError error = m_collection->open();
        m_isReady = m_isReady && error.type() == QSqlError::NoError && !m_collection->isReadOnly();
        QSqlQuery().exec(QStringLiteral("PRAGMA synchronous=OFF")); // no test pulls the plug
        m_collection->load();
    }

    SettingsSandbox m_settings;
    QTemporaryDir m_folder;
    std::unique_ptr<Collection> m_collection;
    bool m_isReady = false;
    QMessageBox::StandardButton m_button = QMessageBox::Ok;
    QStringList m_boxes;
};
