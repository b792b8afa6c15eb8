#include "fileops/importing/metadatamerger.h"

#include "db/sql/longtext.h"
#include "fileops/importing/importrun.h"

#include <QDebug>
#include <QPair>
#include <QVector>

namespace {
/** Adds a text behind another one that does not hold it yet. */
void append(QString &description, const QString &other)
{
    const bool isPart = description.contains(other);
    qDebug() << "externalDescription subset of internal description" << isPart;
    if (!isPart)
        description += (description.isEmpty() ? QString() : QStringLiteral(" . ")) + other;
}
} // namespace

void MetadataMerger::linkTags()
{
    if (!m_run.source.has({QStringLiteral("file_tag")}))
        return;
    // The links of the source are walked once; all else is found by its key.
    const int ofNewFiles = m_run.statements.run(QStringLiteral(
        "INSERT OR IGNORE INTO main.file_tag (file_id,tag_id) SELECT a.new_file_id, t.new_tag_id "
        "FROM fileSource.file_tag AS ft CROSS JOIN mem_added AS a ON a.file_id=ft.file_id "
        "CROSS JOIN migrationDB_tags AS t ON t.old_tag_id=ft.tag_id"));
    // Of all of them together: a line each would be a million.
    qDebug() << "File has " << ofNewFiles << " tags";
    m_run.report.count(ImportReport::Links, ofNewFiles);
    // Walked once more only when there are files on both sides.
    if (m_run.statements.number(QStringLiteral("SELECT EXISTS (SELECT 1 FROM mem_external_file_group)")) == 0)
        return;
    m_run.report.count(
        ImportReport::Links,
        m_run.statements.run(QStringLiteral(
            "INSERT OR IGNORE INTO main.file_tag (file_id,tag_id) SELECT inf.file_id, t.new_tag_id "
            "FROM fileSource.file_tag AS ft CROSS JOIN mem_external_file_group AS ex ON "
            "ex.file_id=ft.file_id "
            "CROSS JOIN mem_internal_file_group AS inf ON inf.group_id=ex.group_id "
            "CROSS JOIN migrationDB_tags AS t ON t.old_tag_id=ft.tag_id "
            "WHERE NOT EXISTS (SELECT 1 FROM main.file_tag AS known "
            "WHERE known.file_id=inf.file_id AND known.tag_id=t.new_tag_id)")));
}

void MetadataMerger::mergeDescriptions(ExchangeSettings::DescriptionMerge how)
{
    if (how == ExchangeSettings::LeaveDescriptions)
        return;
    qint64 current = 0;
    QStringList descriptions;
    m_run.statements.each(
        QStringLiteral("SELECT ex.group_id, substr(CAST(s.file_description AS TEXT), 1, %1) "
                       "FROM mem_external_file_group AS ex "
                       "CROSS JOIN fileSource.files AS s ON s.file_id=ex.file_id "
                       "WHERE length(s.file_description)>0 AND EXISTS (SELECT 1 FROM "
                       "mem_internal_file_group AS inf WHERE inf.group_id=ex.group_id) "
                       "ORDER BY ex.group_id, ex.file_id")
            .arg(LongText::mostCharacters + 1),
        [&](const ImportStatements::Row &row) {
            m_run.stopIfEnded();
            if (row.number(0) != current) {
                merge(current, descriptions, how);
                current = row.number(0);
                descriptions.clear();
            }
            descriptions.append(row.text(1));
        });
    merge(current, descriptions, how);
}

void MetadataMerger::merge(qint64 group, const QStringList &descriptions,
                           ExchangeSettings::DescriptionMerge how)
{
    if (descriptions.isEmpty())
        return;
    QVector<QPair<qint64, QString>> changed;
    m_run.statements.each(
        QStringLiteral(
            "SELECT f.file_id, f.file_description, f.file_name FROM mem_internal_file_group AS inf "
            "JOIN main.files AS f ON f.file_id=inf.file_id WHERE inf.group_id=?"),
        {group}, [&](const ImportStatements::Row &row) {
            const QString description = merged(row.text(1), descriptions, how);
            if (LongText::isTooLong(description))
                m_run.report.leaveOut(tr("Descriptions that would become too long: %1"), row.text(2));
            else if (description != row.text(1))
                changed.append({row.number(0), description});
        });
    if (m_run.isShell && !changed.isEmpty())
        qDebug("Altering description.");
    for (const auto &file : qAsConst(changed))
        m_run.statements.run(QStringLiteral("UPDATE main.files SET file_description=? WHERE file_id=?"),
                             {file.second, file.first});
    m_run.report.count(ImportReport::Descriptions, changed.size());
}

QString MetadataMerger::merged(const QString &description, const QStringList &others,
                               ExchangeSettings::DescriptionMerge how)
{
    const bool isReplaced = how == ExchangeSettings::ReplaceDescriptions;
    qDebug(isReplaced ? "Replacing description." : "Adding description.");
    QString result = isReplaced ? QString() : description;
    for (const QString &other : others)
        append(result, other);
    return result;
}
