#include "db/manager/exporttarget.h"
#include "fileops/files/partfile.h"
#include "fileops/provider/sqlitefileoperationprovider.h"
#include "tests/support/exchangelibrary.h"
#include "tests/support/settingssandbox.h"

#include <QCryptographicHash>

/** What goes out of a database as another one, or as a shell, and comes back into a third. */
class TestRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        SettingsSandbox::clear();
        m_database = std::make_unique<LocalDatabase>();
    }

    void cleanup() { m_database.reset(); }

    void wholeComesBack_data() { addSeeds(); }

    void wholeComesBack()
    {
        QFETCH(quint32, seed);
        fill(seed);
        const QString exported = exportAll(ExportRequest::Database);
        const QString target = makeEmpty();
        import(exported, target);
        const QStringList all = summary("main"_s);
        QVERIFY(attach(target));
        QCOMPARE(summary("other"_s), all);
        // Each file is one of the first database, with all that it had but for the descriptions of its
        // copies.
        const QString files =
            "SELECT id_code, file_name, internal, file_size, modification_date, data_checksum, path, "
            "hex(thumbnail) FROM %1.files LEFT JOIN %1.file_paths ON internal=0 AND path_id=storage_id "
            "LEFT JOIN %1.thumbnails USING (thumbnail_id)"_s;
        QCOMPARE(Sql::rows(files.arg("other"_s) + " EXCEPT "_s + files.arg("main"_s)), QStringList());
        QCOMPARE(Sql::value("SELECT count(*) FROM other.files"),
                 Sql::rows("SELECT count(DISTINCT %1) FROM main.files"_s.arg(content)).value(0));
        QCOMPARE(Sql::rows(
                     "SELECT file_description FROM main.files AS f WHERE file_description<>'' AND NOT EXISTS "
                     "(SELECT 1 FROM (SELECT file_description AS merged, %1 AS c FROM other.files) "
                     "WHERE c=%1 AND instr(merged, f.file_description)>0)"_s.arg(content)),
                 QStringList());
        QCOMPARE(trees("other"_s), trees("main"_s));
        QCOMPARE(Sql::value("PRAGMA other.integrity_check"), "ok"_s);
        Sql::run("DETACH other");
        // A second time there is nothing new.
        const QString before = dump(target);
        import(exported, target);
        QCOMPARE(dump(target), before);
    }

    void copyStaysAsItIs_data() { addSeeds(); }

    void copyStaysAsItIs()
    {
        QFETCH(quint32, seed);
        fill(seed);
        const QString target = m_database->filePath("copy.vrn"_s);
        QVERIFY(QFile::copy(m_database->path(), target));
        const QString before = dump(target);
        import(exportAll(ExportRequest::Database), target);
        QCOMPARE(dump(target), before);
    }

    void halfBecomesTheUnion_data() { addSeeds(); }

    void halfBecomesTheUnion()
    {
        QFETCH(quint32, seed);
        fill(seed);
        const QString exported = exportAll(ExportRequest::Database);
        const QString half =
            exportPart("half.vrn"_s, "file_id%2=0"_s, "tag_id%2=0"_s, ExportRequest::Database);
        import(exported, half);
        // Where there is a path here, and the contents there, both are one file.
        const QStringList all = summary("main"_s, true);
        const QStringList whole = trees("main"_s);
        QVERIFY(attach(half));
        QCOMPARE(summary("other"_s, true), all);
        QCOMPARE(Sql::value("SELECT count(*) FROM other.files").toInt(),
                 Sql::count("main.files WHERE file_id%2=0"_s) +
                     Sql::rows("SELECT count(DISTINCT %1) FROM main.files WHERE %1 NOT IN (SELECT %1 FROM "
                               "main.files WHERE file_id%2=0)"_s.replace("%1"_s, content))
                         .value(0)
                         .toInt());
        // What the half had moved up stands there, too.
        const QStringList merged = trees("other"_s);
        for (const QString &line : whole)
            QVERIFY2(merged.contains(line), qPrintable(line));
        Sql::run("DETACH other");
    }

    void shellBringsTagsBack_data() { addSeeds(); }

    void shellBringsTagsBack()
    {
        QFETCH(quint32, seed);
        fill(seed);
        const QString shell = exportAll(ExportRequest::Shell);
        const QString target = m_database->filePath("copy.vrn"_s);
        QVERIFY(QFile::copy(m_database->path(), target));
        {
            OtherConnection other(target);
            other.run("DELETE FROM file_tag WHERE file_id%3=0"_s);
            other.run("DELETE FROM files WHERE file_id=1"_s);
        }
        const QList<ShellFile> missing = import(shell, target, true);
        QStringList names;
        for (const ShellFile &file : missing)
            names.append(file.fileName);
        const QString gone =
            "SELECT file_name FROM files AS f WHERE file_id=1 AND NOT EXISTS (SELECT 1 FROM files AS twin "
            "WHERE twin.file_id<>1 AND f.internal<>2 AND twin.internal<>2 AND "
            "twin.data_checksum=f.data_checksum AND twin.file_size=f.file_size)"_s;
        QCOMPARE(names, Sql::rows(gone));
        QVERIFY(attach(target));
        // What the file that is gone had went to its copies.
        QCOMPARE(
            Sql::rows("SELECT * FROM main.file_tag WHERE file_id<>1 EXCEPT SELECT * FROM other.file_tag"_s),
            QStringList());
        Sql::run("DETACH other");
        QCOMPARE(import(shell, makeEmpty(), true).size(), Sql::count("files"_s));
    }

private:
    static constexpr quint32 demo = 0;
    static constexpr const char *allTables[] = {
        "files", "file_paths", "thumbnails",      "file_tag", "storage",       "storage_info",
        "tags",  "tag_groups", "tag_group_links", "tb_nodes", "tb_node_links", "tag_relationships"};
    // Copies count as one file, whatever their kind; addresses are told apart by their names.
    const QString content = "CASE internal WHEN 2 THEN file_name ELSE data_checksum||','||file_size END"_s;

    static void addSeeds()
    {
        addColumns<quint32>("seed");
        QTest::addRow("demo") << demo;
        for (quint32 seed = 1; seed <= 3; ++seed)
            QTest::addRow("%u", seed) << seed;
    }

    static void fill(quint32 seed)
    {
        if (seed != demo) {
            ExchangeLibrary(seed).fill();
            return;
        }
        QVERIFY(attach(QStringLiteral(VORNA_DEMO)));
        for (const char *table : allTables)
            QVERIFY(Sql::run("INSERT INTO main.%1 SELECT * FROM other.%1"_s.arg(QLatin1String(table))));
        QVERIFY(Sql::count("files"_s) > 60);
        Sql::run("DETACH other");
    }

    static bool attach(const QString &path) { return Sql::run("ATTACH '%1' AS other"_s.arg(path)); }

    QString makeEmpty()
    {
        const QString path = m_database->filePath("empty.vrn"_s);
        QFile::remove(path);
        OtherConnection other(path);
        for (const QString &statement : Schema::creationStatements())
            other.run(statement);
        return path;
    }

    QString exportAll(int form) { return exportPart("all.out"_s, "1"_s, "1"_s, form); }

    QString exportPart(const QString &name, const QString &files, const QString &tags, int form)
    {
        ExportRequest request;
        request.path = m_database->filePath(name);
        request.form = form;
        for (const QString &id : Sql::rows("SELECT file_id FROM files WHERE "_s + files))
            request.fileIds.append(id.toLongLong());
        for (const QString &id : Sql::rows("SELECT tag_id FROM tags WHERE "_s + tags))
            request.tagIds.append(id.toLongLong());
        SqliteFileOperationProvider provider(m_database->constructor(), m_database->details());
        provider.exportDatabase(request, ExportTarget().make(request));
        wait(provider);
        return request.path;
    }

    /** The files that a shell has and the target has not. */
    QList<ShellFile> import(const QString &source, const QString &target, bool isShell = false,
                            ExchangeSettings::DescriptionMerge merge = ExchangeSettings::AppendDescriptions)
    {
        SqliteFileOperationProvider provider(m_database->constructor(), DBDetails::local(target));
        QSignalSpy done(&provider, &FileOperationProvider::exchangeDone);
        QSignalSpy missing(&provider, &FileOperationProvider::importNotification);
        provider.importDatabase(source, isShell, {true, true, true, true, true, true, merge});
        wait(provider);
        if (done.count() != 1)
            qFatal("nothing was imported");
        return missing.value(0).value(0).value<QList<ShellFile>>();
    }

    static void wait(const FileOperationProvider &provider)
    {
        QVERIFY(QTest::qWaitFor([&provider] { return !provider.isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    /** All rows of a database. */
    QString dump(const QString &path)
    {
        QString text;
        attach(path);
        for (const char *table : allTables)
            text += Sql::rows("SELECT * FROM other.%1 ORDER BY 1, 2"_s.arg(QLatin1String(table)))
                        .join(QLatin1Char('\n'));
        Sql::run("DETACH other");
        return text;
    }

    /** Contents, tags with their links to contents, and groups, without any number that a database gives. */
    QStringList summary(const QString &schema, bool hasTwins = false)
    {
        QSet<QString> facts;
        const auto add = [&facts, &schema](const QString &query) {
            for (const QString &row : Sql::rows(QString(query).replace("%"_s, schema)))
                facts.insert(row);
        };
        add("SELECT "_s + content + " FROM %.files"_s);
        add("SELECT 'tag', tag_name, tag_description, created_by, creation_date FROM %.tags"_s);
        add("SELECT 'link', tag_name, "_s + content +
            " FROM %.files JOIN %.file_tag USING (file_id) JOIN %.tags USING (tag_id)"_s);
        add("SELECT 'group', name, tag_name FROM %.tag_groups JOIN %.tag_group_links USING (tag_group_id) "
            "JOIN %.tags USING (tag_id)"_s);
        QString internal =
            "SELECT storage_id FROM %1.files AS f WHERE internal=1 AND file_size>0"_s.arg(schema);
        if (hasTwins)
            internal += " AND NOT EXISTS (SELECT 1 FROM main.files AS twin WHERE twin.internal=0 AND "
                        "twin.data_checksum=f.data_checksum AND twin.file_size=f.file_size)"_s;
        for (const QString &block : Sql::rows(internal))
            facts.insert(QString::fromLatin1(sha256(schema, block.toLongLong())));
        QStringList lines(facts.cbegin(), facts.cend());
        lines.sort();
        return lines;
    }

    static QByteArray sha256(const QString &schema, qint64 blockId)
    {
        QCryptographicHash hash(QCryptographicHash::Sha256);
        while (blockId > 0) {
            QSqlQuery block(
                "SELECT data, continue_id FROM %1.storage JOIN %1.storage_info USING (storage_id) "
                "WHERE storage_id=%2"_s.arg(schema)
                    .arg(blockId));
            if (!block.next())
                return "broken";
            hash.addData(block.value(0).toByteArray());
            blockId = block.value(1).toLongLong();
        }
        return hash.result().toHex();
    }

    /** Nodes and relationships by the names of their tags; nodes with their places among their neighbours. */
    static QStringList trees(const QString &schema)
    {
        QMap<qint64, QString> names;
        QSqlQuery tags("SELECT tag_id, tag_name FROM %1.tags"_s.arg(schema));
        while (tags.next())
            names.insert(tags.value(0).toLongLong(), DriverTexts::read(tags, 1).toString());
        QStringList lines;
        QMap<qint64, QString> nodes{{0, QString()}};
        QMap<QString, int> twins;
        QSqlQuery links("SELECT parent_id, child_id, tag_id, inverted, tr_options FROM %1.tb_node_links "
                        "JOIN %1.tb_nodes ON node_id=child_id ORDER BY child_id"_s.arg(schema));
        while (links.next()) {
            QString line = nodes.value(links.value(0).toLongLong(), "nowhere"_s) + QLatin1Char('/') +
                           names.value(links.value(2).toLongLong()) + links.value(3).toString();
            line += "#%1"_s.arg(twins[line]++);
            nodes.insert(links.value(1).toLongLong(), line);
            lines.append(line);
        }
        for (const QString &path :
             Sql::rows("SELECT relationship_path FROM %1.tag_relationships"_s.arg(schema))) {
            QStringList pieces;
            for (const QString &id : path.split(QLatin1Char('.')))
                pieces.append(names.value(id.toLongLong()));
            lines.append(pieces.join(QLatin1Char('.')));
        }
        lines.sort();
        return lines;
    }

    std::unique_ptr<LocalDatabase> m_database;
};

QTEST_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
