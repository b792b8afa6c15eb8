#include "bench/samplelibrary.h"

#include "bench/plaindatabase.h"
#include "db/sql/schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QVector>

namespace {

constexpr int rootNodes = 50;
constexpr int childrenANode = 20;
constexpr int relationRoots = 20;
constexpr int relationsBelow = 50;

/** A prepared statement that takes its values one after the other. */
class Row
{
public:
    Row(PlainDatabase &database, const char *text) : m_database(database), m_statement(database.prepare(text))
    {
    }
    ~Row() { sqlite3_finalize(m_statement); }
    Row(const Row &) = delete;
    Row &operator=(const Row &) = delete;

    Row &operator<<(qint64 value)
    {
        sqlite3_bind_int64(m_statement, ++m_place, value);
        return *this;
    }
    Row &operator<<(const QByteArray &text)
    {
        sqlite3_bind_text(m_statement, ++m_place, text.constData(), text.size(), SQLITE_TRANSIENT);
        return *this;
    }
    void insert()
    {
        m_place = 0;
        m_database.step(m_statement);
    }

private:
    PlainDatabase &m_database;
    sqlite3_stmt *m_statement;
    int m_place = 0;
};

QByteArray drawName(QRandomGenerator &random, qint64 id)
{
    static const QVector<QByteArray> words{"Report", "holiday", "IMG",       "invoice",
                                           "Notes",  "scan",    "Protokoll", "letter"};
    const QByteArray &first = words.at(random.bounded(words.size()));
    const QByteArray &second = words.at(random.bounded(words.size()));
    return first + '_' + second + ' ' + QByteArray::number(random.bounded(1000000)) +
           (id % 3 ? ".jpg" : ".pdf");
}

// Small ids are on many files: 1 on about a third of them, the last ones on a few hundred. Every twentieth
// file has none.
QVector<qint64> drawTags(QRandomGenerator &random)
{
    QVector<qint64> tags;
    const int count = random.bounded(20) == 0 ? 0 : 1 + random.bounded(8);
    while (tags.size() < count) {
        const double draw = random.generateDouble();
        const double place = draw * draw * draw * random.generateDouble();
        const qint64 tag = 1 + static_cast<qint64>(place * SampleLibrary::tagCount);
        if (!tags.contains(tag))
            tags.append(tag);
    }
    return tags;
}

void addFiles(PlainDatabase &database, int files)
{
    QRandomGenerator random(42);
    Row file(database, "INSERT INTO files VALUES(?,?,?,?,?,?,?,?,?,?,?,?)");
    Row path(database, "INSERT INTO file_paths VALUES(?,?,?)");
    Row tagging(database, "INSERT INTO file_tag VALUES(?,?)");
    for (qint64 id = 1; id <= files; ++id) {
        const bool isExternal = id % 5 < 3;
        const QByteArray name = drawName(random, id);
        const QByteArray code = QByteArray::number(id + 1000000000, 36).rightJustified(7, '0', true);
        file << id << name << (id % 10 ? QByteArray() : "taken on day " + QByteArray::number(id));
        file << 1000 + id * 7 % 9000000 << 1500000000 + id << 1400000000 + id * 2654435761 % 200000000;
        file << code << 1 + id / 1000 << id << 0 << id * 2654435761 % 268435456 << (isExternal ? 0 : 1);
        file.insert();
        if (isExternal) {
            const QByteArray relative = "albums/year " + QByteArray::number(id / 50) + '/' + name;
            (path << id << "/home/someone/pictures/" + relative << relative).insert();
        }
        const QVector<qint64> tags = drawTags(random);
        for (const qint64 tag : tags)
            (tagging << id << tag).insert();
    }
}

void addTags(PlainDatabase &database)
{
    Row tag(database, "INSERT INTO tags VALUES(?,?,'',?,NULL)");
    Row node(database, "INSERT INTO tb_nodes VALUES(?,?,1,0)");
    Row nodeLink(database, "INSERT INTO tb_node_links VALUES(?,?)");
    Row group(database, "INSERT INTO tag_groups VALUES(?,?)");
    Row groupLink(database, "INSERT INTO tag_group_links VALUES(?,?)");
    for (qint64 id = 1; id <= SampleLibrary::tagCount; ++id) {
        (tag << id << "tag " + QByteArray::number(id) << 1400000000 + id).insert();
        (groupLink << id << 1 + id % SampleLibrary::groupCount).insert();
    }
    for (qint64 id = 1; id <= SampleLibrary::nodeCount; ++id) {
        const qint64 parent = id <= rootNodes ? 0 : 1 + (id - rootNodes - 1) / childrenANode;
        (node << id << id).insert();
        (nodeLink << parent << id).insert();
    }
    for (qint64 id = 1; id <= SampleLibrary::groupCount; ++id)
        (group << id << "group " + QByteArray::number(id)).insert();
}

void addRelations(PlainDatabase &database)
{
    Row relation(database, "INSERT INTO tag_relationships VALUES(?)");
    for (int i = 0; i < relationRoots; ++i) {
        const int root = 100 + i;
        (relation << QByteArray::number(root)).insert();
        for (int below = 0; below < relationsBelow; ++below) {
            const int tag = 1000 + i * relationsBelow + below;
            (relation << QByteArray::number(root) + '.' + QByteArray::number(tag)).insert();
        }
    }
}

} // namespace

QString SampleLibrary::preparedIn(const QString &folder, int files)
{
    QDir().mkpath(folder);
    QString path = QDir(folder).filePath(QStringLiteral("library-%1.vrn").arg(files));
    if (QFileInfo::exists(path))
        return path;
    const QString part = path + QStringLiteral(".part");
    QFile::remove(part);
    {
        PlainDatabase database(QFile::encodeName(part).constData());
        database.run("PRAGMA page_size=16384");
        database.run("PRAGMA synchronous=OFF");
        database.run("PRAGMA cache_size=-400000");
        for (const QString &statement : Schema::creationStatements())
            database.run(statement.toUtf8().constData());
        database.run("BEGIN");
        addTags(database);
        addRelations(database);
        addFiles(database, files);
        database.run("COMMIT");
    }
    QFile::rename(part, path);
    return path;
}
