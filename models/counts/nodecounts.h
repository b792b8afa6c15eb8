#pragma once

#include "core/records/nodetype.h"
#include "models/counts/countpass.h"
#include "models/counts/filecount.h"

#include <QBasicTimer>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QQueue>

class FileFilterModel;
class FileIndex;
class NodeRequirements;

/**
 * How many files each node of the browsing tree shows when it is clicked, found by the selection that the
 * click makes, over all files. That takes milliseconds a node at a million files: it is done for the nodes
 * that somebody asks for, which are those on the screen, in short steps of the event loop. A number stays for
 * as long as the node asks for the same and no file gets or loses one of its tags, which is looked at
 * whenever somebody asks. GUI thread.
 */
class NodeCounts : public QObject
{
    Q_OBJECT

public:
    /** The nodes are borrowed, as is the filter. */
    explicit NodeCounts(const NodeRequirements &nodes, QObject *parent = nullptr);

    void setFiles(const FileFilterModel *files);
    /** Off, there are none. */
    void setOn(bool on);
    /** While all is read anew the numbers of before are kept as outdated ones. */
    void setReading(bool isReading);
    /** The id counts for nodes of tags alone. What is not known now is found out, and changed() tells when.
     */
    FileCount of(NodeType type, qint64 nodeId);

public slots:
    /** What nodes ask for may have changed: those that somebody shows are looked at again, in a moment. */
    void lookAgain();

signals:
    /** Any of them may be another one: whoever shows some asks again. */
    void changed();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    using Key = QPair<int, qint64>; // type and id

    struct Wanted
    {
        TagRequirements requirements;
        unsigned int timeout = 0;
        bool operator==(const Wanted &other) const
        {
            return requirements == other.requirements && timeout == other.timeout;
        }
    };

    struct Entry
    {
        Wanted wanted;
        int structure = -1;   // at which it was wanted
        bool isThere = false; // the node, at that time
        Wanted counted;
        int count = -1;
        quint64 revision = 0;   // of the index, the last one that the count was right at
        qint64 expiry = 0;      // seconds since the epoch, 0 for never
        int round = 0;          // of the last time that somebody asked
        bool isAwaited = false; // stands in the queue
    };

    /** Null without any, and while changes are on their way to it. */
    const FileIndex *settledIndex() const;
    /** Finds out what is wanted now; false for a node that is gone. */
    bool findWanted(const Key &key, Entry &entry) const;
    /** Whether the count is that of what is wanted; notes that it is right at the present revision. */
    bool isRight(Entry &entry) const;
    static quint64 lastChangeOf(const FileIndex &index, const TagRequirements &requirements);
    void await(const Key &key, Entry &entry);
    void lookAtShown();
    void goOn();
    bool beginNext(const FileIndex &index);
    void keepCount();
    void forgetOld();
    void tell();

    const NodeRequirements &m_nodes;
    QPointer<const FileFilterModel> m_files;
    bool m_isOn = true;
    bool m_isReading = false;
    QHash<Key, Entry> m_entries;
    QQueue<Key> m_awaited;
    CountPass m_pass;
    Key m_passKey;
    Wanted m_passWanted;
    QBasicTimer m_next;
    QBasicTimer m_look;   // gathers the changes of one edit
    QBasicTimer m_expiry; // until a file is no longer a recent one
    int m_structure = 0;  // grows with the changes of what nodes may ask for
    int m_round = 0;      // grows whenever all who show some are told to ask again
};
