#pragma once

#include <QMenu>

class TagsController;

/** Lets the user choose the key of a favourite tag, in the context menu of that tag. Made for one use. */
class FavouriteMenu : public QMenu
{
    Q_OBJECT

public:
    FavouriteMenu(TagsController *tags, qint64 tagId, QWidget *parent);

private:
    void addPlace(int place, const QString &text);

    TagsController *m_tags;
    const qint64 m_tagId;
};
