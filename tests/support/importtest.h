#pragma once

#include "fileops/files/datachecksum.h"
#include "tests/support/addingfixture.h"

Q_DECLARE_METATYPE(ImportOptions)

/** A database beside another one, "source", that is merged into it. */
class ImportTest : public QObject
{
protected:
    void openBoth()
    {
        m_fixture = std::make_unique<AddingFixture>();
        m_source = std::make_unique<OtherConnection>(sourcePath(), "source"_s);
        runInSource({"PRAGMA synchronous=OFF"_s, "BEGIN"_s});
        for (const QString &statement : Schema::creationStatements())
            runInSource({statement});
        runInSource({"COMMIT"_s});
    }

    void closeBoth()
    {
        m_source.reset();
        m_fixture.reset();
    }

    /** Imports what the row of the test has put on either side, and once more, which must change nothing. */
    void mergeRow()
    {
        QFETCH(QString, here);
        QFETCH(QString, source);
        QFETCH(QString, query);
        runScript(here, QString());
        runScript(source, "source"_s);
        import();
        QTEST(Sql::rows(query).join(QLatin1Char(' ')), "expected");
        // A second time, there is nothing new.
        const QString before = dump();
        import();
        QCOMPARE(dump(), before);
        QCOMPARE(m_fixture->integrity(), "ok"_s);
    }

    /** The statements for a file whose size, number and name tell of each other. */
    static QString record(int id, int internal, int size, int storageId, int checksum, int thumbnailId = 0)
    {
        return "INSERT INTO files VALUES (%1,'file%1','text %1',%2,1,%1,'C%1',1,%3,%4,%5,%6);"_s.arg(id)
            .arg(size)
            .arg(storageId)
            .arg(thumbnailId)
            .arg(checksum)
            .arg(internal);
    }
    /** An internal file of one block with its own id. */
    static QString file(int id, const QByteArray &bytes)
    {
        return record(id, 1, bytes.size(), id, int(DataChecksum::ofBytes(bytes))) +
               "INSERT INTO storage VALUES (%1,CAST('%2' AS BLOB)); INSERT INTO storage_info VALUES (%1,0);"_s
                   .arg(id)
                   .arg(QString::fromUtf8(bytes));
    }

    QString sourcePath() const { return m_fixture->filePath("source.vrn"_s); }

    void runInSource(const QStringList &statements)
    {
        for (const QString &statement : statements)
            QVERIFY2(m_source->run(statement), qPrintable(statement));
    }

    /** Statements that end in ";" and a blank or the end of the text. */
    void runScript(const QString &script, const QString &connection)
    {
        const QSqlDatabase database =
            connection.isEmpty() ? QSqlDatabase::database() : QSqlDatabase::database(connection);
        for (const QString &statement : splitScript(script)) {
            QSqlQuery query(database);
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
        }
    }
    static QStringList splitScript(const QString &script)
    {
        // A semicolon within quotes ends nothing.
        QStringList statements(QString{});
        bool isQuoted = false;
        for (const QChar sign : script) {
            isQuoted = isQuoted != (sign == QLatin1Char('\''));
            if (sign == QLatin1Char(';') && !isQuoted)
                statements.append(QString());
            else
                statements.last() += sign;
        }
        statements.removeAll(QString());
        return statements;
    }

    /** Two files that both sides have, of which one side has a part of the text, and one that is new. */
    void placeCommonFiles()
    {
        runScript(
            file(1, "one") + file(2, "two") +
                "UPDATE files SET file_name='here', file_description='own' WHERE file_id=1;"
                "UPDATE files SET file_name='half', file_description='text 2 is a part' WHERE file_id=2;"
                "INSERT INTO tags VALUES (1,'b','',1,''); INSERT INTO file_tag VALUES (2,1);"_s,
            QString());
        runScript(file(1, "one") + file(2, "two") + file(3, "more") +
                      "UPDATE files SET file_name='new', file_description='new' WHERE file_id=3;"
                      "INSERT INTO tags VALUES (1,'a','',1,''); INSERT INTO file_tag VALUES (1,1),(2,1);"
                      "INSERT INTO tag_groups VALUES (1,'G'); INSERT INTO tag_group_links VALUES (1,1);"
                      "INSERT INTO tb_nodes VALUES (1,1,1,0); INSERT INTO tb_node_links VALUES (0,1);"
                      "INSERT INTO tag_relationships VALUES ('1');"_s,
                  "source"_s);
    }
    static QString summary()
    {
        const QString files =
            "SELECT file_name, file_description, (SELECT group_concat(tag_name) FROM (SELECT tag_name FROM "
            "file_tag NATURAL JOIN tags WHERE file_tag.file_id=files.file_id ORDER BY 1)) FROM files ORDER BY file_id"_s;
        QString counts;
        for (const char *table : {"tags", "tag_groups", "tb_nodes", "tag_relationships"})
            counts += " %1"_s.arg(Sql::count(QLatin1String(table)));
        return Sql::rows(files).join(QLatin1Char(' ')) + " /"_s + counts;
    }

    static ImportOptions all(ExchangeSettings::DescriptionMerge merge = ExchangeSettings::AppendDescriptions)
    {
        return {true, true, true, true, true, true, merge};
    }

    void import(const ImportOptions &options = all(), bool isShell = false)
    {
        m_fixture->provider().importDatabase(sourcePath(), isShell, options);
        m_fixture->wait();
    }

    /** All rows of the open database but for what counts the imports. */
    static QString dump()
    {
        QString text;
        for (const char *table :
             {"tags", "tag_groups", "tag_group_links", "tb_nodes", "tb_node_links", "tag_relationships",
              "files", "file_tag", "file_paths", "storage", "storage_info", "thumbnails"})
            text += Sql::rows("SELECT * FROM %1 ORDER BY 1, 2"_s.arg(QLatin1String(table)))
                        .join(QLatin1Char('\n'));
        return text;
    }

    std::unique_ptr<AddingFixture> m_fixture;
    std::unique_ptr<OtherConnection> m_source;
};
