#pragma once

#include <QCoreApplication>
#include <QSet>
#include <QString>
#include <QStringList>

class QSqlDatabase;

/**
 * The database that an import reads, looked at on a connection of its own before anything is attached: it may
 * be any file, of any version, damaged, crafted or in use. Worker's thread.
 */
class ImportSource
{
    Q_DECLARE_TR_FUNCTIONS(ImportSource)

public:
    explicit ImportSource(const QString &path) : m_path(path) {}

    /** False when nothing can be imported from it; whyNot() says in a sentence why. */
    bool examine(const QString &openDatabase);
    QString whyNot() const { return m_whyNot; }
    static QString busyText();

    const QString &path() const { return m_path; }
    /** For a report. */
    QString shownName() const;
    /** Whether it has these tables with all the columns that are read of them. */
    bool has(const QStringList &tables) const;
    /** Tables that a database has and this one lacks, or that lack a column. */
    QStringList missingTables() const;

private:
    bool look(const QSqlDatabase &database);
    bool readSchema(const QSqlDatabase &database);
    bool readRows(const QSqlDatabase &database);
    bool refuse(const QString &whyNot);

    const QString m_path;
    QString m_whyNot;
    QSet<QString> m_tables;
};
