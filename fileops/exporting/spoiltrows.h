#pragma once

#include "fileops/exchange/idtable.h"

#include <QVariant>

struct ExportRequest;
struct ExportSummary;
class FileOperationWorker;
class QuietStatements;

/**
 * Rows of the open database that cannot be read, as their pages are spoilt. A transaction that has met one
 * writes nothing any more, so they are looked for out of any, once an export has failed for them, and stay
 * behind when it is tried again. On the worker's thread and connection.
 */
class SpoiltRows
{
public:
    SpoiltRows(FileOperationWorker &worker, QuietStatements &statements, ExportSummary &summary);

    bool create();
    void drop();
    /**
     * Reads all that is to be exported, and notes for the summary what cannot be. Files that cannot be read
     * have the negative of their ids in their table then. False when nothing was found or it is to end.
     */
    bool find(const ExportRequest &request, const IdTable &files, const IdTable &tags);
    /** Of tags and of tag groups, for "NOT IN". */
    QString tagIds() const { return QStringLiteral("(SELECT id FROM temp.%1)").arg(m_tags.name()); }
    QString groupIds() const { return QStringLiteral("(SELECT id FROM temp.%1)").arg(m_groups.name()); }
    qint64 files() const { return m_files; }

    /** Whether the last of the statements failed at a spoilt page. */
    static bool wereMet(const QuietStatements &statements);
    /** Notes a file that stays behind, by what can still be read of it. */
    static void skipFile(QuietStatements &statements, ExportSummary &summary, qint64 fileId);

private:
    bool findTags(const IdTable &tags);
    bool findGroups();
    bool findFiles(const ExportRequest &request, const IdTable &files);
    QVector<qint64> idsOf(const QString &statement);
    /** Whether the statements all read what they are to of one id. */
    bool isSound(const QStringList &statements, qint64 id);
    static QString nameOf(QuietStatements &statements, const QStringList &texts, qint64 id);
    static void note(ExportSummary &summary, const QString &name);
    void skip(const QString &name);

    FileOperationWorker &m_worker;
    QuietStatements &m_statements;
    ExportSummary &m_summary;
    IdTable m_tags;
    IdTable m_groups;
    qint64 m_files = 0;
    int m_found = 0;
};
