#pragma once

#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QVariant>
#include <QVector>

class CollectionSettings;
class TagsController;

/**
 * The tags of the open database that are at hand: up to ten with keys of their own, and those that were typed
 * last. They are kept in the settings of the database, not in it. Owned by the controller of tags. GUI
 * thread.
 */
class FavouriteTags : public QObject
{
    Q_OBJECT

public:
    static constexpr int most = 10;

    explicit FavouriteTags(TagsController *tags);

    /** The tag of a key, by its place from 0 on; 0 for none. */
    qint64 tagAt(int place) const;
    /** The place of a tag's key, -1 without one. */
    int placeOf(qint64 tagId) const;
    /** Gives a tag this key in place of any other, and takes the key from the tag that had it; -1 for none.
     */
    void setPlace(qint64 tagId, int place);

    /** What is pressed for a place: Alt+1 to Alt+9, and Alt+0 for the last one. */
    static QKeySequence keyOf(int place);
    /** The texts of the keys, by the tags that have one. */
    QHash<qint64, QString> keyTexts() const;

    /** The newest first. */
    QVector<qint64> lastUsed() const;
    /** All of it, as undo keeps it. */
    QVariant state() const;
    void setState(const QVariant &state);
    void noteUsed(const QVector<qint64> &tagIds);

public slots:
    /** The database may give the ids of removed tags to new ones. */
    void forget(const QVector<qint64> &tagIds);
    /** The tag that stays gets the key of one that goes, unless it has one. */
    void merge(qlonglong target, const QVector<qint64> &others);

private:
    CollectionSettings *settings() const;
    QList<qint64> places() const;

    TagsController *m_tags;
};
