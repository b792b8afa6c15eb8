#pragma once

#include <QObject>

class ErrorTeller;
class RecordKeeper;
class RecordLoads;

/** What WholeReload asks of the manager that owns it. GUI thread. */
class WholeReloadHost
{
public:
    virtual ~WholeReloadHost() = default;

    /** Holds the database in one state until endReading(); false when it cannot be read. */
    virtual bool beginReading() = 0;
    virtual void endReading() = 0;
    /** Begins to read all files; RecordLoads tells when they are there. */
    virtual void beginFiles() = 0;
    /** The list of trees is there: the nodes of which one are to be read? */
    virtual void chooseBrowsingTree() = 0;
};

/**
 * Has all records read, in one state of the database: by steps for who opens it and shows how far it is, or
 * in one go, when they are to be read anew. Many files are read from the event loop, and the rest follows
 * them; a busy database is tried again later. Owned by the manager, GUI thread.
 */
class WholeReload : public QObject
{
    Q_OBJECT

public:
    /** All of them must outlive this. */
    WholeReload(WholeReloadHost &host, RecordKeeper &records, RecordLoads &loads, ErrorTeller &errors)
        : m_host(host), m_records(records), m_loads(loads), m_errors(errors)
    {
    }

    /** Around the loads of all records; false when there is nothing to be read, and they stay as they were.
     */
    bool begin();
    /** True when everything was read. */
    bool end();

    void run();
    /** From the event loop, once however often it is asked for: callers of an edit may hold records still. */
    void runLater();
    bool isDue() const { return m_isDue; }
    /** Whether the event loop goes on while the files are being read. */
    bool isReadingFiles() const { return m_isReadingFiles; }
    /** The files that the event loop has waited for are there, or will not come. */
    void goOn();

signals:
    /** The records of before are about to go. */
    void aboutToReload();
    void reloaded();

private:
    void readAll();

    WholeReloadHost &m_host;
    RecordKeeper &m_records;
    RecordLoads &m_loads;
    ErrorTeller &m_errors;
    bool m_isDue = false;
    bool m_isReadingFiles = false;
};
