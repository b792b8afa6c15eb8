#include "core/providers/changejournal.h"

#include "db/sql/connections.h"
#include "db/sql/serverwatch.h"
#include "db/sql/sqltext.h"

#include <QSqlDriver>

namespace {
const QString channel = QStringLiteral("vorna_changes");
const QLatin1String outdatedEdit("VO001");

// The first columns tell whether there are stamps, whether the journal reaches back to the place, and up to
// where it goes; they come once also when nobody changed anything.
const QString newsText = QStringLiteral(
    "SELECT has_stamp, coalesce(first_stamp<=%1, %1=0), last_stamp, table_name, kind, "
    "array_to_string(keys,','), "
    "array_to_string(paths,E'\\n') FROM (SELECT EXISTS (SELECT FROM tables_modification_date) AS has_stamp, "
    "(SELECT min(stamp) FROM change_commits) AS first_stamp, "
    "(SELECT max(stamp) FROM change_commits) AS last_stamp) AS state "
    "LEFT JOIN (SELECT table_name, kind, keys, paths FROM change_commits JOIN change_journal "
    "USING (transaction_id) WHERE stamp>%1 AND client IS DISTINCT FROM current_setting('vorna.client', "
    "true)) "
    "AS notes ON true;");

enum Column { HasStamp, IsWhole, LastStamp, Table, Kind, Keys, Paths };

QString arrayText(const QVector<qint64> &ids)
{
    return QLatin1String("'{") + SqlText::idList(ids) + QLatin1String("}'::bigint[]");
}

QString arrayText(const QStringList &texts)
{
    QStringList quoted;
    for (const QString &text : texts)
        quoted.append(SqlText::quoted(text));
    return QLatin1String("ARRAY[") + quoted.join(QLatin1Char(',')) + QLatin1String("]::text[]");
}

/** The set of a table's keys; null for a table of which nothing is kept. */
QSet<qint64> *keysOf(const QString &table, ForeignChanges &changes)
{
    static const QHash<QString, QSet<qint64> ForeignChanges::*> sets = {
        {QStringLiteral("files"), &ForeignChanges::files},
        // Links and members change what is shown of the rows that they lead to.
        {QStringLiteral("file_tag"), &ForeignChanges::files},
        {QStringLiteral("file_paths"), &ForeignChanges::paths},
        {QStringLiteral("thumbnails"), &ForeignChanges::thumbnails},
        {QStringLiteral("tags"), &ForeignChanges::tags},
        {QStringLiteral("tag_groups"), &ForeignChanges::groups},
        {QStringLiteral("tag_group_links"), &ForeignChanges::groups},
        {QStringLiteral("tb_nodes"), &ForeignChanges::nodes},
        {QStringLiteral("tb_node_links"), &ForeignChanges::nodes},
        {QStringLiteral("browsing_trees"), &ForeignChanges::trees}};
    const auto found = sets.constFind(table);
    return found == sets.constEnd() ? nullptr : &(changes.*found.value());
}
} // namespace

ChangeJournal::ChangeJournal(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

void ChangeJournal::listen()
{
    QSqlDriver *driver = QSqlDatabase::database(Connections::mainName(), false).driver();
    using Told = void (QSqlDriver::*)(const QString &, QSqlDriver::NotificationSource, const QVariant &);
    connect(driver, static_cast<Told>(&QSqlDriver::notification), this,
            [this](const QString &, QSqlDriver::NotificationSource, const QVariant &author) {
                // What this client has committed itself comes back as well.
                if (author.toString() != Connections::clientName())
                    emit told();
            });
    driver->subscribeToNotification(channel);
}

bool ChangeJournal::readPlace()
{
    TableData table;
    const auto readValue = [this, &table](const QString &statement) {
        freeRows(table);
        return runSync(statement, table) && !table.isEmpty();
    };
    // A database that an older version has set up has no journal, and is followed by its stamps alone.
    m_isThere = false;
    const bool isRead = readValue(QStringLiteral("SELECT to_regclass('change_commits') IS NOT NULL;"));
    if (isRead && table.constFirst()->at(0).toBool() &&
        readValue(QStringLiteral("SELECT coalesce(max(stamp),0) FROM change_commits;"))) {
        m_isThere = true;
        m_place = table.constFirst()->at(0).toLongLong();
    }
    freeRows(table);
    return isRead;
}

ChangeJournal::Look ChangeJournal::look(ForeignChanges &changes)
{
    return read(QString(), changes);
}

ChangeJournal::Look ChangeJournal::begin(ForeignChanges &changes)
{
    return read(QStringLiteral("BEGIN;"), changes);
}

ChangeJournal::Look ChangeJournal::beginReading(ForeignChanges &changes)
{
    return read(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY;"), changes);
}

ChangeJournal::Look ChangeJournal::read(const QString &beginning, ForeignChanges &changes)
{
    const QSqlDatabase database = QSqlDatabase::database(Connections::mainName(), false);
    QSqlQuery query(database);
    Look result = Unread;
    {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        // Both go in one message: the answer to the first one says nothing.
        const bool isRead = query.exec(beginning + newsText.arg(m_place)) &&
                            (beginning.isEmpty() || query.nextResult()) && query.next();
        if (isRead && query.value(HasStamp).toBool()) {
            changes.isOfAll = changes.isOfAll || !query.value(IsWhole).toBool();
            result = Current;
            // Also when the news are only of this client's own changes, which need not be read again.
            m_place = qMax(m_place, query.value(LastStamp).toLongLong());
            do {
                if (query.isNull(Table))
                    continue;
                note(query, changes);
                result = News;
            } while (query.next());
            result = changes.isOfAll ? News : result;
        }
    }
    reportError(database, query);
    query.finish();
    // The BEGIN may have been run by itself.
    if (result == Unread && !beginning.isEmpty())
        rollbackTransaction();
    return result;
}

void ChangeJournal::note(const QSqlQuery &row, ForeignChanges &changes)
{
    // A change whose rows were not noted one by one.
    if (row.isNull(Keys)) {
        changes.isOfAll = true;
        return;
    }
    const QString keys = row.value(Keys).toString();
    QSet<qint64> *set = keysOf(row.value(Table).toString(), changes);
    if (set && !keys.isEmpty()) {
        const QVector<QStringRef> texts = keys.splitRef(QLatin1Char(','));
        for (const QStringRef &key : texts)
            set->insert(key.toLongLong());
    }
    const QStringList paths = row.value(Paths).toString().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &path : paths)
        changes.relations.insert(path);
}

ChangeJournal::Commit ChangeJournal::commit(const EditBase &base)
{
    const QString check = QStringLiteral("SELECT refuse_if_changed(%1,%2,%3,%4,%5,%6,")
                              .arg(QString::number(m_place), arrayText(base.files), arrayText(base.tags),
                                   arrayText(base.groups), arrayText(base.nodes), arrayText(base.trees)) +
                          arrayText(base.relations) + QLatin1String(");");
    const QStringList statements = m_queue.take() + QStringList{check, QStringLiteral("COMMIT;")};
    const QStringList expected = m_queue.takeExpected();
    m_queue.end();
    const QSqlDatabase database = QSqlDatabase::database(Connections::mainName(), false);
    QSqlQuery query(database);
    query.setForwardOnly(true); // else the driver asks for the names of the tables of each answer
    bool isDone = false;
    bool isCommitted = false;
    {
        const ServerWatch::Waiting waiting(database, ServerWatch::Patient);
        isDone = query.exec((statements + expected).join(QLatin1Char(' ')));
        for (int i = 1; i < statements.size() && isDone; ++i)
            isDone = query.nextResult();
        isCommitted = isDone;
        // One that fails is asked for once more by whoever wants it.
        for (int i = 0; i < expected.size() && isDone; ++i) {
            TableData rows;
            isDone = query.nextResult() && QueryRunner::readRows(query, rows);
            if (isDone)
                m_queue.keepAnswer(expected.at(i), rows);
        }
    }
    if (isCommitted)
        return Committed;
    // The server's own check has refused it: somebody was quicker, which is no error.
    const bool isOutdated = query.lastError().nativeErrorCode() == outdatedEdit;
    if (!isOutdated)
        reportError(database, query);
    query.finish();
    rollbackTransaction();
    return isOutdated ? Outdated : Failed;
}
