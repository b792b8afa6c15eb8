#pragma once

#include <QObject>
#include <QVariant>

/**
 * The signals of Map and Vector, which as templates cannot declare their own. A copy of a container copies
 * its contents and none of its connections, so that containers travel by value in signals.
 */
class SignalContainer : public QObject
{
    Q_OBJECT

public:
    SignalContainer() = default;
    ~SignalContainer() override;
    SignalContainer(const SignalContainer &other);
    SignalContainer &operator=(const SignalContainer &other);

signals:
    /** An item was appended at this index. */
    void itemAdded(int index);
    /** An item was put under this key. */
    void itemInserted(QVariant key);
    void itemRemoved(int index);
    /** The item under this key, or at this index, has gone. */
    void itemDeleted(QVariant key);
};
