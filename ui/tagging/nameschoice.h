#pragma once

#include "core/records/chosentags.h"
#include "models/completion/nameindex.h"
#include "ui/tagging/takennames.h"

#include <QSet>
#include <QVector>

/** The tags that have been named in a line so far, in their order, each once. A plain value. GUI thread. */
class NamesChoice
{
public:
    bool isEmpty() const { return m_tags.isEmpty(); }
    /** The id 0 is that of a tag to be made; blanks make no name. */
    void take(qint64 id, const QString &name);
    void takeLastBack();
    void clear() { m_tags.clear(); }

    QSet<qint64> ids() const;
    QVector<TakenNames::Name> names() const;
    /** What there is to be done now: a name may have become that of a tag since it was taken. */
    ChosenTags tags(const NameIndex &index) const;

private:
    struct Tag
    {
        qint64 id;
        QString name;
    };
    QVector<Tag> m_tags;
};
