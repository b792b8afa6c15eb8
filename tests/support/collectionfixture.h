#pragma once

#include "app/messages.h"
#include "tests/support/localcollection.h"
#include "tests/support/settingssandbox.h"

#include <QSettings>
#include <QTest>

/** A local collection with settings of its own, whose boxes are noted and answered by a button. */
class CollectionFixture : private SettingsSandbox, public LocalCollection
{
public:
    CollectionFixture()
    {
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes.append(box.title.isEmpty() ? box.text : box.title + QLatin1String(": ") + box.text);
            return Messages::Answer{m_button, -1};
        });
    }
    ~CollectionFixture()
    {
        close();
        Messages::setResponder({});
    }
    CollectionFixture(const CollectionFixture &) = delete;
    CollectionFixture &operator=(const CollectionFixture &) = delete;

    /** Closes the database and opens it again, as after a restart of the program. */
    void reopen()
    {
        close();
        open();
    }

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
            ids.append(manager()->addTag(name));
        return ids;
    }

    void waitForWorker()
    {
        QCoreApplication::processEvents(); // a request reaches the worker from the event loop
        QVERIFY(QTest::qWaitFor([this] { return !manager()->isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

private:
    QMessageBox::StandardButton m_button = QMessageBox::Ok;
    QStringList m_boxes;
};
