#pragma once

#include "core/tagging/tagchange.h"

#include <QBasicTimer>
#include <QObject>

class RecordKeeper;

/**
 * Takes into the records what is stored already: tags that files were linked to or unlinked from. Few at
 * once, many in short steps of the event loop, during which the records are not those of the database
 * (LoadState::isMerging()). What comes while everything is read follows it. Owned by the manager, GUI thread.
 */
class TagMerges : public QObject
{
    Q_OBJECT

public:
    /** The records must outlive this. */
    explicit TagMerges(RecordKeeper &records) : m_records(records) {}

    void add(const TagChanges &changes);
    /** Forgets what is left: all is read anew, or nobody wants it any more. */
    void clear();
    /** More pairs of file and tag are not taken in at once. */
    static constexpr int mostAtOnce = 20000;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /** Some of them. */
    void takeSome();
    bool isOver() const { return m_changes.isEmpty(); }

    RecordKeeper &m_records;
    TagChanges m_changes;
    int m_taken = 0; ///< files of the last change
    QBasicTimer m_next;
};
