#include "db/sql/postgresqueryconstructor.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "tests/support/text.h"

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

void addSelectsAndClauses(Constructor c, const Rows &row)
{
    row("select", c.selectQuery(ab, t, false), "SELECT  a,b FROM t");
    row("select distinct", c.selectQuery(ab, t, true), "SELECT DISTINCT a,b FROM t");
    row("select from a text with a place", c.selectQuery({"'%3'"_s}, "(%1)"_s, false),
        "SELECT  '%3' FROM (%1)");
    row("count", c.countQuery("a"_s, t, false), "SELECT  COUNT(a) FROM t");
    row("count distinct", c.countQuery("a"_s, t, true), "SELECT DISTINCT COUNT(a) FROM t");
    row("where", c.whereClause("a='%1'"_s), " WHERE a='%1'");
    row("and", c.logicalOperator(AndOperator), " AND ");
    row("or", c.logicalOperator(OrOperator), " OR ");
    row("not", c.logicalOperator(NotOperator), " NOT ");
    row("no operator", c.logicalOperator(NoOperator), "");
    row("in", c.inClause("id"_s, {"1"_s, "it's"_s, "%1"_s}), " id IN ('1', 'it''s', '%1')");
    row("group by", c.groupByClause(ab), " GROUP BY a,b");
    row("end", c.statementEnd(), ";");
}

void addWrites(Constructor c, const Rows &row)
{
    row("insert of two rows", c.insertQuery(ab, t, {{"1"_s, "2"_s}, {"3"_s, "4"_s}}),
        "INSERT INTO t ('a','b') VALUES ('1', '2'),('3', '4')",
        "INSERT INTO t (\"a\",\"b\") VALUES ('1', '2'),('3', '4')");
    row("insert in the table's order", c.insertQuery({}, t, {QStringList{"1"_s, QString()}}),
        "INSERT INTO t VALUES ('1', '')");
    row("insert without rows", c.insertQuery({}, t, {}), "INSERT INTO t VALUES ");
    row("insert of hostile values",
        c.insertQuery({}, t, {QStringList{"O'Brien"_s, "%1 \\"_s, "x\" --"_s}, {"a"_s, "b"_s, "c"_s}}),
        "INSERT INTO t VALUES ('O''Brien', '%1 \\', 'x\" --'),('a', 'b', 'c')");
    row("update", c.updateQuery(ab, t, {"1"_s, "O'N"_s}), "UPDATE t SET 'a' = '1','b' = 'O''N'",
        "UPDATE t SET \"a\" = '1',\"b\" = 'O''N'");
    row("update of fewer values than columns", c.updateQuery(ab + QStringList{"c"_s}, t, {"1"_s, "2"_s}),
        "UPDATE t SET 'a' = '1','b' = '2'", "UPDATE t SET \"a\" = '1',\"b\" = '2'");
    row("update without values", c.updateQuery(ab, t, {}), "");
    row("delete", c.deleteQuery(t), "DELETE FROM t ");
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

/** The texts of both dialects, a row a call. */
class TestQueryConstructors : public QObject
{
    Q_OBJECT

private slots:
    void texts_data()
    {
        addColumns<QStringList, QStringList>("made", "expected");
        const SqliteQueryConstructor sqlite;
        const PostgresQueryConstructor postgres;
        for (Constructor c :
             {std::cref<AbstractQueryConstructor>(sqlite), std::cref<AbstractQueryConstructor>(postgres)}) {
            const Rows row{&c == &sqlite};
            addSelectsAndClauses(c, row);
            addWrites(c, row);
            addJoins(c, row);
            addKeysAndConstraints(c, row);
        }
    }

    void texts()
    {
        QFETCH(QStringList, made);
        QTEST(made, "expected");
    }
};

QTEST_APPLESS_MAIN(TestQueryConstructors)
#include "tst_queryconstructors.moc"
