#pragma once

#include "core/controllers/abstractcontroller.h"
#include "core/records/recordtypes.h"
#include "models/trees/tagnames.h"

#include <QHash>
#include <QStringList>
#include <QVector>

class TRmodel;

/** The trees of tag relationships: a tag stands for all tags below it. GUI thread. */
class RelationsController : public AbstractController, public TagNames
{
    Q_OBJECT

public:
    RelationsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                        Collection *collection);

    void load() override;

    /** Whether the tags may be put below the path; an empty path is the top level. */
    bool isLegal(const QString &nodePath, const QVector<qint64> &tagIds) const;
    /** Puts tags below a path. Nothing is put where it stands already. */
    void addChildren(const QString &parentPath, const QVector<qint64> &tagIds);
    /** Removes a place with all below it; tags and files stay. */
    void removeNode(const QString &path);

    TRmodel *model() const { return m_model; }

    QString tagName(qint64 tagId) const override;
    /** The tags below every place of the tags, with repeats. */
    QVector<qint64> descendantsOf(const QVector<qint64> &tagIds) const;
    /** The same for each of the tags. All of them cost one look at the trees. */
    QHash<qint64, QVector<qint64>> descendantsOfEach(const QVector<qint64> &tagIds) const;
    QVector<qint64> ancestorsOf(const QVector<qint64> &tagIds) const;

private:
    bool isAnyAtTop(const QVector<qint64> &tagIds) const;
    template <typename Related>
    QVector<qint64> collect(const QVector<qint64> &tagIds, Related related) const;

    TRmodel *m_model;
};
