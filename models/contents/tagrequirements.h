#pragma once

#include <QHash>
#include <QSet>
#include <QVector>

/**
 * Which tags a file must, may or must not have. Files meet all of required, one of eitherOr and none of
 * excluded; the other lists widen these by the descendants in the relationship trees. Exclusion wins, and
 * exclusion alone selects nothing.
 */
struct TagRequirements
{
    QVector<qint64> required;
    QVector<qint64> eitherOr;
    QVector<qint64> excluded;
    /** For a tag of required those that satisfy it in its place. */
    QHash<qint64, QVector<qint64>> requiredAlternatives;
    /** Counts only beside an eitherOr that is not empty. */
    QVector<qint64> eitherOrWidened;
    QVector<qint64> excludedWidened;

    enum Change {
        Same,
        LessWidened, ///< what is asked for stays
        LessAsked
    };
    /** Tags that are no more are in no list. */
    Change forget(const QSet<qint64> &tagIds);
    /** Of all lists, in no order. */
    QVector<qint64> allTags() const;

    bool operator==(const TagRequirements &other) const
    {
        return required == other.required && eitherOr == other.eitherOr && excluded == other.excluded &&
               requiredAlternatives == other.requiredAlternatives &&
               eitherOrWidened == other.eitherOrWidened && excludedWidened == other.excludedWidened;
    }
};
