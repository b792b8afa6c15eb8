#include "fileops/importing/groupimporter.h"

#include "db/sql/longtext.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/importing/importrun.h"

#include <QDebug>
#include <QHash>

void GroupImporter::importGroups()
{
    qDebug("-------- importing tag groups");
    if (!m_run.source.has({QStringLiteral("tag_groups"), QStringLiteral("tag_group_links")}))
        return;
    mapGroups();
    m_run.statements.run(
        QStringLiteral("INSERT OR IGNORE INTO main.tag_group_links (tag_id,tag_group_id) "
                       "SELECT t.new_tag_id, g.new_group_id FROM fileSource.tag_group_links AS l "
                       "CROSS JOIN mem_tag_groups AS g ON g.old_group_id=l.tag_group_id "
                       "CROSS JOIN migrationDB_tags AS t ON t.old_tag_id=l.tag_id "
                       "WHERE NOT EXISTS (SELECT 1 FROM main.tag_group_links AS known WHERE "
                       "known.tag_id=t.new_tag_id AND known.tag_group_id=g.new_group_id)"));
}

void GroupImporter::createTable()
{
    // It is there when others wrote during the comparison, which is then made once more.
    m_run.statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.mem_tag_groups"));
    m_run.statements.run(QStringLiteral("CREATE TEMPORARY TABLE mem_tag_groups ("
                                        "old_group_id INTEGER PRIMARY KEY, new_group_id INTEGER NOT NULL)"));
}

void GroupImporter::mapGroups()
{
    QHash<QString, qint64> idsByName;
    m_run.statements.each(
        QStringLiteral("SELECT tag_group_id, name FROM main.tag_groups ORDER BY tag_group_id DESC"),
        [&](const ImportStatements::Row &row) { idsByName.insert(row.text(1), row.number(0)); });
    qint64 nextId = m_run.statements.nextId(QStringLiteral("tag_groups"), QStringLiteral("tag_group_id"));
    const auto take = [&](const ImportStatements::Row &row) {
        const QString name = row.text(1);
        if (name.trimmed().isEmpty() || LongText::isTooLong(name)) {
            m_run.report.leaveOut(tr("Tag groups without a name: %1"), 1);
            return;
        }
        auto known = idsByName.find(name);
        qDebug() << (known == idsByName.end() ? "new group" : "existing group") << row.number(0);
        if (known == idsByName.end()) {
            known = idsByName.insert(name, nextId++);
            m_run.statements.run(
                QStringLiteral("INSERT INTO main.tag_groups (tag_group_id,name) VALUES (?,?)"),
                {known.value(), name});
            m_run.report.count(ImportReport::Groups);
        }
        m_run.statements.run(
            QStringLiteral("INSERT INTO mem_tag_groups (old_group_id,new_group_id) VALUES (?,?)"),
            {row.number(0), known.value()});
    };
    try {
        m_run.statements.each(
            QStringLiteral("SELECT DISTINCT t0.tag_group_id, t0.name FROM fileSource.tag_groups AS t0 "
                           "NATURAL JOIN fileSource.tag_group_links AS t1 "
                           "WHERE t1.tag_id IN (SELECT old_tag_id FROM migrationDB_tags) ORDER BY 1"),
            take);
    } catch (const CriticalDMError &) {
        qDebug("Error getting groups to add");
        throw;
    }
}
