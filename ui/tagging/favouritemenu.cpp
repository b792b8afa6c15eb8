#include "ui/tagging/favouritemenu.h"

#include "app/settings/showntext.h"
#include "core/controllers/favouritetags.h"
#include "core/controllers/tagscontroller.h"

namespace {
constexpr int longestName = 60; // signs
}

FavouriteMenu::FavouriteMenu(TagsController *tags, qint64 tagId, QWidget *parent)
    : QMenu(tr("Favourite Key"), parent), m_tags(tags), m_tagId(tagId)
{
    setObjectName(QStringLiteral("favouriteMenu"));
    for (int place = 0; place < FavouriteTags::most; ++place) {
        const QString key = FavouriteTags::keyOf(place).toString(QKeySequence::NativeText);
        const qint64 holder = tags->favourites()->tagAt(place);
        QString name = ShownText::cut(tags->tagName(holder), longestName);
        // A single one would underline the letter behind it and go itself.
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        addPlace(place, holder > 0 ? tr("%1: %2").arg(key, name) : tr("%1: free").arg(key));
    }
    addSeparator();
    addPlace(-1, tr("None"));
}

void FavouriteMenu::addPlace(int place, const QString &text)
{
    QAction *action = addAction(text);
    action->setCheckable(true);
    action->setChecked(m_tags->favourites()->placeOf(m_tagId) == place);
    FavouriteTags *favourites = m_tags->favourites();
    connect(action, &QAction::triggered, favourites,
            [favourites, tagId = m_tagId, place] { favourites->setPlace(tagId, place); });
}
