#include "app/window/recentdatabases.h"

#include "app/settings/collectionidentity.h"
#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"

#include <QAction>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr int entryCount = 5;
constexpr int longestEntry = 80; // signs

bool isGone(const DBDetails &details)
{
    return details.type() == Constants::localDatabase && !QFileInfo::exists(details.databaseName());
}

} // namespace

RecentDatabases::RecentDatabases(QObject *parent) : QObject(parent)
{
    for (int i = 0; i < entryCount; ++i) {
        auto *action = new QAction(this);
        action->setObjectName(QStringLiteral("recentDatabase%1").arg(i + 1));
        action->setVisible(false);
        connect(action, &QAction::triggered, this, [this, action] { emit chosen(details(action)); });
        m_actions.append(action);
    }
}

DBDetails RecentDatabases::newest() const
{
    return details(m_actions.first());
}

void RecentDatabases::load()
{
    setEntries(WindowSettings::recentDatabases());
}

void RecentDatabases::save() const
{
    QQueue<DBDetails> stored;
    for (const DBDetails &entry : entries())
        stored.enqueue(entry);
    WindowSettings::setRecentDatabases(stored);
}

void RecentDatabases::remember(const DBDetails &open)
{
    QList<DBDetails> kept = entries();
    kept.erase(std::remove_if(kept.begin(), kept.end(), isGone), kept.end());
    if (!CollectionIdentity::displayText(open).isEmpty()) {
        kept.removeAll(open);
        kept.prepend(open.withPassword(QString()));
    }
    setEntries(kept);
    save();
}

DBDetails RecentDatabases::details(const QAction *action)
{
    return action->data().value<DBDetails>();
}

QList<DBDetails> RecentDatabases::entries() const
{
    QList<DBDetails> list;
    for (const QAction *action : m_actions) {
        if (!action->data().isNull())
            list.append(details(action));
    }
    return list;
}

void RecentDatabases::setEntries(const QList<DBDetails> &entries)
{
    for (int i = 0; i < m_actions.size(); ++i) {
        QAction *action = m_actions.at(i);
        const bool used = i < entries.size();
        action->setVisible(used);
        action->setData(used ? QVariant::fromValue(entries.at(i)) : QVariant());
        if (!used)
            continue;
        // A lone ampersand would become the mnemonic.
        // The end of a path tells more than its middle, which would widen the menu beyond the screen.
        QString text = ShownText::cut(CollectionIdentity::displayText(entries.at(i)), longestEntry);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        action->setText(QString::number(i + 1) + QLatin1Char(' ') + text);
    }
}
