#pragma once

#include "models/contents/tagrequirements.h"

#include <QObject>
#include <QVector>

class BrowsTreeController;
class MainViewController;
class RelationsController;
class TagsController;

/**
 * Changes what is asked of the shown files tag by tag, instead of asking anew. What is not asked for by tags
 * (all files, a search) counts as asking nothing. The tags that files must have are marked in the table of
 * tags, and no node is current any more. Tags that are asked for here are met by those below them; one that
 * was asked for before goes on as it was, so that narrowing never shows a file more. GUI thread.
 */
class Narrowing : public QObject
{
    Q_OBJECT

public:
    explicit Narrowing(MainViewController *mainView);

    /** Borrowed; null where there is none. */
    void setPeers(TagsController *tags, BrowsTreeController *browsTree, RelationsController *relations);

    /** Empty lists where no tags are asked for. */
    TagRequirements present() const;
    /** Files must have these tags, too. */
    void require(const QVector<qint64> &tagIds);
    /** Files must not have the tag. */
    void exclude(qint64 tagId);
    /** The tag is of no matter any more; without the last one all files are shown. */
    void takeOff(qint64 tagId);
    /** One tag stands for the others from now on. */
    void replace(qint64 target, const QVector<qint64> &others);
    /** The same question with the tags that stand below others now. */
    void askAgain();

private:
    void ask(const TagRequirements &requirements);
    void forget(TagRequirements &requirements, qint64 tagId) const;
    QVector<qint64> below(const QVector<qint64> &tagIds) const;

    MainViewController *m_mainView;
    TagsController *m_tags = nullptr;
    BrowsTreeController *m_browsTree = nullptr;
    RelationsController *m_relations = nullptr;
};
