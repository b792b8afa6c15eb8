#include "app/settings/collectionidentity.h"

#include "app/settings/constants.h"

namespace CollectionIdentity {

QString description(const DBDetails &details)
{
    if (details.type() == Constants::localDatabase)
        return QLatin1Char('\'') + details.databaseName() + QLatin1Char('\'');
    if (details.type() == Constants::serverDatabase)
        return displayText(details);
    return QStringLiteral("No database specified");
}

QString displayText(const DBDetails &details)
{
    if (details.type() == Constants::localDatabase)
        return details.databaseName();
    if (details.type() == Constants::serverDatabase)
        return QStringLiteral("%1:%2, %3")
            .arg(details.host(), QString::number(details.port()), details.databaseName());
    return {};
}

QString shortName(const DBDetails &details)
{
    return details.host() + QLatin1Char('_') + details.databaseName();
}

} // namespace CollectionIdentity
