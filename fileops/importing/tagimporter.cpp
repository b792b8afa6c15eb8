#include "fileops/importing/tagimporter.h"

#include "db/sql/longtext.h"
#include "fileops/importing/importrun.h"

#include <QDebug>
#include <QHash>

void TagImporter::createTable()
{
    m_run.statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.migrationDB_tags"));
    m_run.statements.run(QStringLiteral("CREATE TEMPORARY TABLE migrationDB_tags ("
                                        "old_tag_id INTEGER PRIMARY KEY, new_tag_id INTEGER NOT NULL)"));
}

void TagImporter::importTags()
{
    importFrom("");
}

void TagImporter::importTagsOfCommonFiles()
{
    if (m_run.source.has({QStringLiteral("file_tag")}))
        importFrom(" WHERE tag_id IN (SELECT ft.tag_id FROM fileSource.file_tag AS ft "
                   "CROSS JOIN mem_external_file_group AS ex ON ex.file_id=ft.file_id)");
}

void TagImporter::importFrom(const char *tagsCondition)
{
    qDebug("Importing tags");
    QHash<QString, qint64> idsByName;
    // Downwards, so that of several tags with one name the lowest id is the one that stays in the hash.
    m_run.statements.each(QStringLiteral("SELECT tag_id, tag_name FROM main.tags ORDER BY tag_id DESC"),
                          [&](const ImportStatements::Row &row) {
                              if (row.number(0) > 0)
                                  idsByName.insert(row.text(1), row.number(0));
                          });
    qint64 nextId = m_run.statements.nextId(QStringLiteral("tags"), QStringLiteral("tag_id"));
    const auto take = [&](const ImportStatements::Row &row) {
        const QString name = row.text(1);
        qint64 date = 0;
        const bool isFit = !name.trimmed().isEmpty() && !LongText::isTooLong(name) &&
                           row.readNumber(2, date) && row.number(0) > 0 && row.number(3) == 0;
        if (!isFit) {
            m_run.report.leaveOut(
                tr("Tags without a name, with a date that is none or with texts that are too long: %1"), 1);
            return;
        }
        if (row.isNull(2))
            qDebug("*******  ISSUE: NULL creation_date in fileSource.tags;");
        auto known = idsByName.find(name);
        if (known == idsByName.end()) {
            known = idsByName.insert(name, nextId++);
            importTag(row.number(0), name, date, known.value());
        }
        qDebug() << "Mapping tag" << row.number(0) << "to new id" << known.value();
        m_run.statements.run(
            QStringLiteral("INSERT INTO migrationDB_tags (old_tag_id,new_tag_id) VALUES (?,?)"),
            {row.number(0), known.value()});
    };
    m_run.statements.each(QStringLiteral("SELECT tag_id, substr(tag_name, 1, %1), creation_date, "
                                         "max(ifnull(length(tag_description),0), "
                                         "ifnull(length(created_by),0))>=%1 FROM fileSource.tags")
                                  .arg(LongText::mostCharacters + 1) +
                              QLatin1String(tagsCondition) + QStringLiteral(" ORDER BY tag_id"),
                          take);
}

void TagImporter::importTag(qint64 oldId, const QString &name, qint64 date, qint64 newId)
{
    m_run.statements.run(
        QStringLiteral("INSERT INTO main.tags (tag_id,tag_name,tag_description,creation_date,created_by) "
                       "SELECT ?, ?, CAST(tag_description AS TEXT), ?, CAST(created_by AS TEXT) "
                       "FROM fileSource.tags WHERE tag_id=?"),
        {newId, name, date, oldId});
    m_run.report.count(ImportReport::Tags);
}
