#include "app/settings/constants.h"
#include "db/sql/databaselock.h"
#include "db/sql/postgresqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "tests/support/database.h"

namespace {

using Constructor = const AbstractQueryConstructor &;

const QString t = "t"_s;
const QStringList ab = {"a"_s, "b"_s};

/** Makes rows of what a constructor says, beside what it should say in its dialect. */
struct Rows
{
    void operator()(const char *name, const QStringList &made, const QStringList &sqlite,
                    const QStringList &postgres) const
    {
        QTest::addRow("%s, %s", isSqlite ? "sqlite" : "postgres", name)
            << made << (isSqlite ? sqlite : postgres);
    }
    /** One statement, which both dialects write alike unless the last text is given. */
    void operator()(const char *name, const QString &made, const char *sqlite,
                    const char *postgres = nullptr) const
    {
        (*this)(name, QStringList{made}, {QString::fromUtf8(sqlite)},
                {QString::fromUtf8(postgres ? postgres : sqlite)});
    }

    bool isSqlite;
};

void addClausesAndWrites(Constructor c, const Rows &row)
{
    row("select from a text with a place", c.selectQuery({"'%3'"_s}, "(%1)"_s, false),
        "SELECT  '%3' FROM (%1)");
    row("count", c.countQuery("a"_s, t, false), "SELECT  COUNT(a) FROM t");
    row("count distinct", c.countQuery("a"_s, t, true), "SELECT DISTINCT COUNT(a) FROM t");
    row("or", c.logicalOperator(OrOperator), " OR ");
    row("not", c.logicalOperator(NotOperator), " NOT ");
    row("no operator", c.logicalOperator(NoOperator), "");
    row("in", c.inClause("id"_s, {"1"_s, "it's"_s, "%1"_s}), " id IN ('1', 'it''s', '%1')");
    row("group by", c.groupByClause(ab), " GROUP BY a,b");
    row("insert without rows", c.insertQuery({}, t, {}), "INSERT INTO t VALUES ");
    row("insert of hostile values",
        c.insertQuery({}, t, {QStringList{"O'Brien"_s, "%1 \\"_s, "x\" --"_s}, {"a"_s, "b"_s, "c"_s}}),
        "INSERT INTO t VALUES ('O''Brien', '%1 \\', 'x\" --'),('a', 'b', 'c')");
    row("update of fewer values than columns", c.updateQuery(ab + QStringList{"c"_s}, t, {"1"_s, "2"_s}),
        "UPDATE t SET 'a' = '1','b' = '2'", "UPDATE t SET \"a\" = '1',\"b\" = '2'");
    row("update without values", c.updateQuery(ab, t, {}), "");
}

void addJoins(Constructor c, const Rows &row)
{
    const auto join = [&](JoinKind kind) { return c.joinQuery(kind, "tags"_s, "a=b"_s); };
    row("plain join", join(PlainJoin), "  JOIN tags ON a=b");
    row("inner join", join(InnerJoin), "  INNER JOIN tags ON a=b");
    row("left join", join(LeftJoin), "  LEFT JOIN tags ON a=b");
    row("left outer join", join(LeftOuterJoin), "  LEFT OUTER JOIN tags ON a=b");
    row("right join", join(RightJoin), "  JOIN tags ON a=b", "  RIGHT JOIN tags ON a=b");
    row("simple join", join(SimpleJoin), "  JOIN tags ON a=b");
    row("full outer join", join(FullOuterJoin), "  JOIN tags ON a=b", "  FULL OUTER JOIN tags ON a=b");
    row("natural join", join(NaturalJoin), "  NATURAL JOIN tags WHERE a=b");
}

void addKeysAndConstraints(Constructor c, const Rows &row)
{
    row("last id", c.lastIdQuery("tag_id"_s), "select last_insert_rowid() as tag_id;", "");
    row("highest id", c.maxIdQuery("load_id"_s, "files"_s), " SELECT IFNULL(max(load_id)+1, 1) FROM files ",
        " SELECT coalesce(max(load_id)+1, 1) FROM files ");
    row("next id", c.nextIdQuery("storage_id"_s, "storage"_s),
        " SELECT IFNULL(max(storage_id)+1, 1) FROM storage ", " SELECT nextval('storage_storage_id_seq') ");
    const QStringList columns = {"a INTEGER"_s, "b TEXT"_s};
    const QStringList rebuild = {"CREATE TABLE tnew (a INTEGER, b TEXT);"_s,
                                 "INSERT INTO tnew SELECT * FROM t;"_s, "DROP TABLE t;"_s,
                                 "ALTER TABLE tnew RENAME TO t;"_s};
    const QString dropped = "ALTER TABLE t DROP CONSTRAINT c;"_s;
    row("drop constraint", c.dropConstraintQueries(t, "c"_s, columns), rebuild, {dropped});
    row("add constraint", c.addConstraintQueries(t, "c"_s, "CHECK (a>0)"_s, columns), rebuild,
        {dropped, "ALTER TABLE t ADD CONSTRAINT c CHECK (a>0);"_s});
    row("constraint exists", c.constraintExistsQuery(t, "c"_s), "",
        "select * from information_schema.table_constraints where table_name='t' and constraint_name='c';");
    row("constraint definition", c.constraintDefinitionQuery(t, "c"_s), "",
        "SELECT pg_get_expr(conbin, conrelid) FROM pg_constraint WHERE conrelid =  (SELECT oid FROM pg_class "
        "WHERE relname LIKE 't' and conname='c');");
}

} // namespace

/** The texts that databases are sent: their parts, whole ones of both dialects, and a new local database. */
class TestSqlText : public QObject
{
    Q_OBJECT

private slots:
    void fillsPlaces_data()
    {
        addColumns<QString, QStringList, QString>("templateText", "values", "text");
        const QStringList two{"A"_s, "B"_s};
        QStringList eleven;
        for (int i = 1; i <= 11; ++i)
            eleven.append("<%1>"_s.arg(i));

        addRow("in order", "%1,%2"_s, two, "A,B"_s);
        addRow("repeated and turned", "%2%1%2"_s, two, "BAB"_s);
        addRow("value holds a place", "'%1' '%2'"_s, QStringList{"%2"_s, "%1%%"_s}, "'%2' '%1%%'"_s);
        addRow("place without a value", "%1 %3 %2"_s, two, "A %3 B"_s);
        addRow("two digits", "%11%1"_s, eleven, "<11><1>"_s);
        addRow("no place", "LIKE '%a%' %0 100%"_s, two, "LIKE '%a%' %0 100%"_s);
        addRow("doubled sign", "%%1"_s, two, "%A"_s);
        addRow("letter behind", "%1_%2_seq"_s, two, "A_B_seq"_s);
        addRow("empty value", "[%1]"_s, QStringList{QString()}, "[]"_s);
    }

    void fillsPlaces()
    {
        QFETCH(QString, templateText);
        QFETCH(QStringList, values);
        QTEST(SqlText::fill(templateText, values), "text");
    }

    void listsIds()
    {
        const QVector<qint64> ids{3, -1, Q_INT64_C(9223372036854775807)};
        QCOMPARE(SqlText::idList(ids), "3,-1,9223372036854775807"_s);
        QCOMPARE(SqlText::idTexts(ids).join(QLatin1Char(',')), SqlText::idList(ids));
        QVERIFY(SqlText::idList({}).isEmpty());
    }

    void locksAreKnownByTheirCodes()
    {
        const auto isLock = [](const QString &driver, const char *code) {
            return DatabaseLock::isMetBy({{}, {}, QSqlError::StatementError, QLatin1String(code)}, driver);
        };
        // A time-out and a deadlock; busy and locked, each alone and with what SQLite adds.
        for (const char *code : {"55P03", "40P01"})
            QVERIFY2(isLock(Constants::postgresDriver, code), code);
        for (const char *code : {"5", "517", "6", "262"})
            QVERIFY2(isLock(Constants::sqliteDriver, code), code);
        QVERIFY(!isLock(Constants::postgresDriver, "57014") && !isLock(Constants::sqliteDriver, "11"));
    }

    void dialects_data()
    {
        addColumns<QStringList, QStringList>("made", "expected");
        const SqliteQueryConstructor sqlite;
        const PostgresQueryConstructor postgres;
        for (Constructor c :
             {std::cref<AbstractQueryConstructor>(sqlite), std::cref<AbstractQueryConstructor>(postgres)}) {
            const Rows row{&c == &sqlite};
            addClausesAndWrites(c, row);
            addJoins(c, row);
            addKeysAndConstraints(c, row);
        }
    }

    void dialects()
    {
        QFETCH(QStringList, made);
        QTEST(made, "expected");
    }

    void newDatabaseHoldsTablesAndStampsOnly()
    {
        const LocalDatabase database;
        const QStringList tables = QSqlDatabase::database().tables(QSql::Tables);
        QCOMPARE(tables.size(), 21);
        int rows = 0;
        for (const QString &table : tables)
            rows += Sql::count(table);
        QCOMPARE(rows, 2);
        QCOMPARE(Sql::value("SELECT v.version, s.version FROM vorna_version v, scheme_version s"),
                 "4.1.3|4.1.0"_s);
        QCOMPARE(Sql::value("SELECT count(*) FROM sqlite_master WHERE type IN ('view','trigger')"), "0"_s);
    }

    void rulesOfTheTables_data()
    {
        addColumns<QString, bool>("statement", "isAllowed");
        const QString files = "INSERT INTO files VALUES(NULL,'n','',0,1,1,'%1',1,%2,NULL,%3,0)"_s;
        const auto file = [&files](const char *code, const char *storage, const char *checksum) {
            return files.arg(QLatin1String(code), QLatin1String(storage), QLatin1String(checksum));
        };
        addRow("file", file("AAAAAAA", "0", "0"), true);
        addRow("id code twice", file("TAKEN00", "1", "1"), false);
        addRow("negative storage id", file("AAAAAAA", "-1", "0"), false);
        addRow("negative checksum", file("AAAAAAA", "0", "-1"), false);
        addRow("node 0", "INSERT INTO tb_nodes VALUES(0,1,1,0)"_s, false);
        addRow("node 5", "INSERT INTO tb_nodes VALUES(5,1,1,0)"_s, true);
        addRow("top-level node", "INSERT INTO tb_node_links VALUES(0,8)"_s, true);
        addRow("second parent", "INSERT INTO tb_node_links VALUES(3,7)"_s, false);
        addRow("empty path", "INSERT INTO tag_relationships VALUES('')"_s, false);
        addRow("path", "INSERT INTO tag_relationships VALUES('1.2')"_s, true);
        addRow("tag on a file twice", "INSERT INTO file_tag VALUES(1,1)"_s, false);
        addRow("tag in a group twice", "INSERT INTO tag_group_links VALUES(1,1)"_s, false);
        addRow("path without its relative form", "INSERT INTO file_paths (path) VALUES('/a')"_s, false);
    }

    void rulesOfTheTables()
    {
        QFETCH(QString, statement);
        const LocalDatabase database;
        const char *present[] = {"INSERT INTO files VALUES(NULL,'n','',0,1,1,'TAKEN00',1,0,NULL,0,0)",
                                 "INSERT INTO tb_node_links VALUES(0,7)", "INSERT INTO file_tag VALUES(1,1)",
                                 "INSERT INTO tag_group_links VALUES(1,1)"};
        for (const char *row : present)
            QVERIFY(Sql::run(row));
        QTEST(Sql::run(statement), "isAllowed");
    }
};

QTEST_GUILESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
