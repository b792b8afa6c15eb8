#pragma once

#include "tests/support/localcollection.h"
#include "tests/support/serverdatabase.h"

/** A collection on a server where others write too. */
class ServerTest : public QObject
{
protected:
    void openServer()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        auto database = std::make_unique<ServerDatabase>();
        m_server = database.get();
        m_collection = std::make_unique<LocalCollection>(std::move(database));
        m_warnings = std::make_unique<QSignalSpy>(m_collection->get(), &Collection::showTempWarning);
        m_reloads = std::make_unique<QSignalSpy>(m_collection->get(), &Collection::allDataReloaded);
    }

    void closeServer()
    {
        m_warnings.reset();
        m_reloads.reset();
        m_collection.reset();
    }

    /** A change by another client. */
    void foreign(const char *statement) { QVERIFY(m_server->owner().run(QString::fromUtf8(statement))); }

    ServerDatabase *m_server = nullptr; // the collection's
    std::unique_ptr<LocalCollection> m_collection;
    std::unique_ptr<QSignalSpy> m_warnings;
    std::unique_ptr<QSignalSpy> m_reloads;
};
