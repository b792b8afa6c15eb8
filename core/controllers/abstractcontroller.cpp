#include "core/controllers/abstractcontroller.h"

#include "app/messages.h"
#include "core/collection.h"
#include "db/databasemanger.h"

AbstractController::AbstractController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                       Collection *collection)
    : QObject(collection), m_manager(manager), m_queryConstructor(constructor), m_collection(collection)
{
}

AbstractController::~AbstractController() = default;

bool AbstractController::isReadOnly() const
{
    return m_manager && m_manager->isReadOnly();
}

void AbstractController::showReadOnlyMessage()
{
    Messages::information(nullptr, tr("Read-only Database"), tr("This database is read-only."));
}

bool AbstractController::mayWrite()
{
    if (!isReadOnly())
        return true;
    showReadOnlyMessage();
    return false;
}
