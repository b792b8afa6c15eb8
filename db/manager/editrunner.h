#pragma once

#include "db/manager/editresult.h"
#include "db/manager/providers.h"
#include "db/undo/editrecord.h"

#include <QVector>

#include <functional>

class BaseDBProvider;
class ErrorTeller;
class RecordLoads;
struct EditBase;

/** What EditRunner asks of the manager that owns it. GUI thread. */
class EditRunHost
{
public:
    enum EditEnd {
        Ended,
        Failed,
        Again ///< others came in between: what is new is to be seen first
    };

    virtual ~EditRunHost() = default;

    /** Around an edit; all that is known of it stands in its transaction where there is one. */
    virtual bool beginEdit(const EditBase &base) = 0;
    virtual EditEnd endEdit(bool isDone) = 0;
    /** Around all of it; what it changed is told when it is through, and may be empty. */
    virtual void editBegins() = 0;
    virtual void editEnded(const EditStep &step) = 0;
    /** Behind the news of an edit, which may have been read together with its end. */
    virtual void toldEdit() {}
    /** Notes the state of the database after a change of our own. */
    virtual void refreshModificationDate() = 0;
};

/**
 * The one way of all edits that the window makes itself: begun on records that are those of the database,
 * ended, tried again when others came in between, and told when they are through. Owned by the manager, GUI
 * thread.
 */
class EditRunner
{
public:
    /** All of it must outlive this, the providers each call. */
    EditRunner(EditRunHost &host, ErrorTeller &errors, RecordLoads &loads)
        : m_host(host), m_errors(errors), m_loads(loads)
    {
    }
    void setProviders(const DatabaseProviders &providers, RowReader *reader)
    {
        m_providers = providers;
        m_rows = reader;
        m_record.setReader(reader);
    }
    /** Of the edit that is running. */
    EditRecord &record() { return m_record; }

    /** The providers whose edits are of records, and the reader of what edits change. */
    QVector<BaseDBProvider *> editors() const;
    /** What the edit made, and a lock hid afterwards, is read later: as that of PendingReloads. */
    EditResult run(int reload, const EditBase &base, const std::function<EditResult()> &edit);

private:
    void tell(const EditResult &result);

    EditRunHost &m_host;
    ErrorTeller &m_errors;
    RecordLoads &m_loads;
    DatabaseProviders m_providers;
    RowReader *m_rows = nullptr;
    EditRecord m_record;
};
