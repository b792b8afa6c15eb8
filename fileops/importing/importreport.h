#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

/** What an import did, counted while it runs, and the word about it at its end. */
class ImportReport
{
    Q_DECLARE_TR_FUNCTIONS(ImportReport)

public:
    enum Kind { Files, KnownFiles, Descriptions, Tags, Groups, Nodes, Relationships, Links };

    void count(Kind kind, int rows = 1) { m_counts[kind] += rows; }
    int counted(Kind kind) const { return m_counts.value(kind); }
    /** Something that was not imported, and why: a sentence for several, which a list of names may follow. */
    void leaveOut(const QString &why, const QString &name);
    void leaveOut(const QString &why, int count);
    void setNote(const QString &note) { m_note = note; }

    /** The lines of the box. */
    QString text(const QString &sourceName) const;

private:
    struct LeftOut
    {
        int count = 0;
        QStringList names;
    };

    QMap<Kind, int> m_counts;
    QMap<QString, LeftOut> m_leftOut;
    QString m_note;
};
