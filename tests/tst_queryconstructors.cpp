#include "db/postgresqueryconstructor.h"
#include "db/sqlitequeryconstructor.h"

#include <QtTest>

#include <functional>

using Call = std::function<QStringList(const AbstractQueryConstructor &)>;
Q_DECLARE_METATYPE(Call)

namespace {
QString text(const char *literal)
{
    return QString::fromLatin1(literal);
}

QStringList list(std::initializer_list<const char *> literals)
{
    QStringList result;
    for (const char *literal : literals)
        result.append(text(literal));
    return result;
}
} // namespace

/** The texts of both dialects side by side: one row is one call. */
class TestQueryConstructors : public QObject
{
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
    void callersValuesStay();

private:
    void addRow(const char *name, const Call &call, const QStringList &sqlite, const QStringList &postgres);
    /** A row of one statement, which both dialects write alike unless the last text is given. */
    void addOne(const char *name, const std::function<QString(const AbstractQueryConstructor &)> &call,
                const char *sqlite, const char *postgres = nullptr);
    void addSelects();
    void addWrites();
    void addJoins();
    void addClauses();
    void addKeys();
    void addConstraints();
};

using Constructor = const AbstractQueryConstructor &;

void TestQueryConstructors::addRow(const char *name, const Call &call, const QStringList &sqlite,
                                   const QStringList &postgres)
{
    QTest::newRow(name) << call << sqlite << postgres;
}

void TestQueryConstructors::addOne(const char *name, const std::function<QString(Constructor)> &call,
                                   const char *sqlite, const char *postgres)
{
    addRow(name, [call](Constructor c) { return QStringList{call(c)}; }, {text(sqlite)},
           {text(postgres ? postgres : sqlite)});
}

void TestQueryConstructors::addSelects()
{
    addOne(
        "select",
        [](Constructor c) {
            return c.selectQuery(list({"a", "b"}), text("t"), false);
        },
        "SELECT  a,b FROM t");
    addOne(
        "select distinct",
        [](Constructor c) {
            return c.selectQuery(list({"a", "b"}), text("t"), true);
        },
        "SELECT DISTINCT a,b FROM t");
    addOne(
        "select from a text with a place",
        [](Constructor c) { return c.selectQuery(list({"'%3'"}), text("(%1)"), false); },
        "SELECT  '%3' FROM (%1)");
    addOne(
        "count", [](Constructor c) { return c.countQuery(text("a"), text("t"), false); },
        "SELECT  COUNT(a) FROM t");
    addOne(
        "count distinct", [](Constructor c) { return c.countQuery(text("a"), text("t"), true); },
        "SELECT DISTINCT COUNT(a) FROM t");
}

void TestQueryConstructors::addWrites()
{
    addOne(
        "insert of two rows",
        [](Constructor c) {
            return c.insertQuery(list({"a", "b"}), text("t"), {list({"1", "2"}), list({"3", "4"})});
        },
        "INSERT INTO t ('a','b') VALUES ('1', '2'),('3', '4')",
        "INSERT INTO t (\"a\",\"b\") VALUES ('1', '2'),('3', '4')");
    addOne(
        "insert in the table's order",
        [](Constructor c) {
            return c.insertQuery({}, text("t"), {list({"1", ""})});
        },
        "INSERT INTO t VALUES ('1', '')");
    addOne(
        "insert without rows", [](Constructor c) { return c.insertQuery({}, text("t"), {}); },
        "INSERT INTO t VALUES ");
    addOne(
        "insert of hostile values",
        [](Constructor c) {
            return c.insertQuery({}, text("t"),
                                 {list({"O'Brien", "%1 \\", "x\" --"}), list({"a", "b", "c"})});
        },
        "INSERT INTO t VALUES ('O''Brien', '%1 \\', 'x\" --'),('a', 'b', 'c')");
    addOne(
        "update",
        [](Constructor c) {
            return c.updateQuery(list({"a", "b"}), text("t"), list({"1", "O'N"}));
        },
        "UPDATE t SET 'a' = '1','b' = 'O''N'", "UPDATE t SET \"a\" = '1',\"b\" = 'O''N'");
    addOne(
        "update of fewer values than columns",
        [](Constructor c) {
            return c.updateQuery(list({"a", "b", "c"}), text("t"), list({"1", "2"}));
        },
        "UPDATE t SET 'a' = '1','b' = '2'", "UPDATE t SET \"a\" = '1',\"b\" = '2'");
    addOne(
        "update without values", [](Constructor c) { return c.updateQuery(list({"a"}), text("t"), {}); }, "");
    addOne(
        "delete", [](Constructor c) { return c.deleteQuery(text("t")); }, "DELETE FROM t ");
}

void TestQueryConstructors::addJoins()
{
    struct Row
    {
        JoinKind kind;
        const char *name;
        const char *sqlite;
        const char *postgres;
    };
    static const Row rows[] = {
        {PlainJoin, "plain join", "  JOIN tags ON a=b", "  JOIN tags ON a=b"},
        {InnerJoin, "inner join", "  INNER JOIN tags ON a=b", "  INNER JOIN tags ON a=b"},
        {LeftJoin, "left join", "  LEFT JOIN tags ON a=b", "  LEFT JOIN tags ON a=b"},
        {LeftOuterJoin, "left outer join", "  LEFT OUTER JOIN tags ON a=b", "  LEFT OUTER JOIN tags ON a=b"},
        {RightJoin, "right join", "  JOIN tags ON a=b", "  RIGHT JOIN tags ON a=b"},
        {SimpleJoin, "simple join", "  JOIN tags ON a=b", "  JOIN tags ON a=b"},
        {FullOuterJoin, "full outer join", "  JOIN tags ON a=b", "  FULL OUTER JOIN tags ON a=b"},
        {NaturalJoin, "natural join", "  NATURAL JOIN tags WHERE a=b", "  NATURAL JOIN tags WHERE a=b"},
    };
    for (const Row &row : rows) {
        const JoinKind kind = row.kind;
        addOne(
            row.name, [kind](Constructor c) { return c.joinQuery(kind, text("tags"), text("a=b")); },
            row.sqlite, row.postgres);
    }
}

void TestQueryConstructors::addClauses()
{
    addOne(
        "where", [](Constructor c) { return c.whereClause(text("a='%1'")); }, " WHERE a='%1'");
    addOne(
        "and", [](Constructor c) { return c.logicalOperator(AndOperator); }, " AND ");
    addOne(
        "or", [](Constructor c) { return c.logicalOperator(OrOperator); }, " OR ");
    addOne(
        "not", [](Constructor c) { return c.logicalOperator(NotOperator); }, " NOT ");
    addOne(
        "no operator", [](Constructor c) { return c.logicalOperator(NoOperator); }, "");
    addOne(
        "in",
        [](Constructor c) {
            return c.inClause(text("id"), list({"1", "it's", "%1"}));
        },
        " id IN ('1', 'it''s', '%1')");
    addOne(
        "group by",
        [](Constructor c) {
            return c.groupByClause(list({"a", "b"}));
        },
        " GROUP BY a,b");
    addOne(
        "end", [](Constructor c) { return c.statementEnd(); }, ";");
    addRow(
        "reserved operations",
        [](Constructor c) {
            return QStringList{c.reservedQueryA(text("a"), text("b")), c.reservedQueryB(text("a"), text("b")),
                               c.reservedQueryC(text("a"))};
        },
        list({"", "", ""}), list({"", "", ""}));
}

void TestQueryConstructors::addKeys()
{
    addOne(
        "last id", [](Constructor c) { return c.lastIdQuery(text("tag_id")); },
        "select last_insert_rowid() as tag_id;", "");
    addOne(
        "highest id", [](Constructor c) { return c.maxIdQuery(text("load_id"), text("files")); },
        " SELECT IFNULL(max(load_id)+1, 1) FROM files ", " SELECT coalesce(max(load_id)+1, 1) FROM files ");
    addOne(
        "next id", [](Constructor c) { return c.nextIdQuery(text("storage_id"), text("storage")); },
        " SELECT IFNULL(max(storage_id)+1, 1) FROM storage ", " SELECT nextval('storage_storage_id_seq') ");
}

void TestQueryConstructors::addConstraints()
{
    const QStringList rebuild =
        list({"CREATE TABLE tnew (a INTEGER, b TEXT);", "INSERT INTO tnew SELECT * FROM t;", "DROP TABLE t;",
              "ALTER TABLE tnew RENAME TO t;"});
    addRow(
        "drop constraint",
        [](Constructor c) {
            return c.dropConstraintQueries(text("t"), text("c"), list({"a INTEGER", "b TEXT"}));
        },
        rebuild, list({"ALTER TABLE t DROP CONSTRAINT c;"}));
    addRow(
        "add constraint",
        [](Constructor c) {
            return c.addConstraintQueries(text("t"), text("c"), text("CHECK (a>0)"),
                                          list({"a INTEGER", "b TEXT"}));
        },
        rebuild, list({"ALTER TABLE t DROP CONSTRAINT c;", "ALTER TABLE t ADD CONSTRAINT c CHECK (a>0);"}));
    addOne(
        "constraint exists", [](Constructor c) { return c.constraintExistsQuery(text("t"), text("c")); }, "",
        "select * from information_schema.table_constraints where table_name='t' and constraint_name='c';");
    addOne(
        "constraint definition",
        [](Constructor c) { return c.constraintDefinitionQuery(text("t"), text("c")); }, "",
        "SELECT pg_get_expr(conbin, conrelid) FROM pg_constraint WHERE conrelid =  (SELECT oid FROM pg_class "
        "WHERE relname LIKE 't' and conname='c');");
}

void TestQueryConstructors::texts_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QStringList>("sqlite");
    QTest::addColumn<QStringList>("postgres");
    addSelects();
    addWrites();
    addJoins();
    addClauses();
    addKeys();
    addConstraints();
}

void TestQueryConstructors::texts()
{
    QFETCH(Call, call);
    QFETCH(QStringList, sqlite);
    QFETCH(QStringList, postgres);
    QCOMPARE(call(SqliteQueryConstructor()), sqlite);
    QCOMPARE(call(PostgresQueryConstructor()), postgres);
}

void TestQueryConstructors::callersValuesStay()
{
    const QStringList values{QStringLiteral("O'Brien")};
    const QVector<QStringList> rows{values};
    const SqliteQueryConstructor constructor;
    constructor.insertQuery({}, QStringLiteral("t"), rows);
    constructor.updateQuery({QStringLiteral("a")}, QStringLiteral("t"), values);
    constructor.inClause(QStringLiteral("a"), values);
    QCOMPARE(values.first(), QStringLiteral("O'Brien"));
    QCOMPARE(rows.first(), values);
}

QTEST_APPLESS_MAIN(TestQueryConstructors)
#include "tst_queryconstructors.moc"
