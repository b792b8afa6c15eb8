#pragma once

#include "db/sql/basedbprovider.h"

#include <QDateTime>
#include <QStringList>

/** Answers what a database is: its version, whether it may be written, when it last changed. GUI thread. */
class GeneralProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit GeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** When any client last wrote; false where the back-end does not keep that. */
    virtual bool lastChangeDate(QDateTime &date);

    /** Runs the statements one by one until one fails; an empty name stands for the default connection. */
    virtual bool runStatements(const QStringList &statements, const QString &connectionName);

    /** Answers by gotDBVerion. */
    virtual void loadVersion();

    /**
     * Answers by gotDBReadonly; leaves no row behind, and its failing insert is no error. No answer comes
     * when another connection was in the way: isInUse() tells then.
     */
    virtual void probeReadOnly();
    bool isInUse() const { return m_isInUse; }

signals:
    void gotDBVerion(bool ok, const TableData &table);
    void gotDBReadonly(bool readOnly);

private:
    bool canWrite();

    bool m_isInUse = false;
};
