#include "core/controllers/abstractcontroller.h"

#include "core/controllers/collection.h"
#include "core/prompts/userprompts.h"
#include "db/manager/databasemanger.h"

#include <algorithm>
#include <iterator>

AbstractController::AbstractController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                       Collection *collection)
    : QObject(collection), m_manager(manager), m_queryConstructor(constructor), m_collection(collection)
{
}

AbstractController::~AbstractController() = default;

UserPrompts &AbstractController::prompts() const
{
    // Asked anew each time: the window sets itself only after the controllers are made.
    return m_collection ? m_collection->prompts() : UserPrompts::nobody();
}

bool AbstractController::isReadOnly() const
{
    return m_manager && m_manager->isReadOnly();
}

void AbstractController::showReadOnlyMessage()
{
    prompts().tell(UserPrompts::Information, tr("Read-only Database"), tr("This database is read-only."));
}

bool AbstractController::mayEdit()
{
    if (!isReadOnly())
        return true;
    showReadOnlyMessage();
    return false;
}

QVector<qint64> AbstractController::knownTags(const QVector<qint64> &tagIds) const
{
    QVector<qint64> known;
    if (m_manager)
        // Ids come from drags and dialogs, behind which others may have removed their tags.
        std::copy_if(tagIds.cbegin(), tagIds.cend(), std::back_inserter(known),
                     [this](qint64 tagId) { return m_manager->hasTag(tagId); });
    return known;
}
