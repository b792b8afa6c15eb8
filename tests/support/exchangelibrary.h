#pragma once

#include "core/records/filekind.h"
#include "fileops/files/datachecksum.h"
#include "tests/support/database.h"

#include <algorithm>
#include <numeric>
#include <random>

/**
 * Fills an empty local database on the default connection with files of each kind, tags, groups, nodes and
 * relationships, all drawn from a seed: chains lie between each other, names hold every odd sign, some files
 * have the same bytes. Contents are small, their blocks too.
 */
class ExchangeLibrary
{
public:
    explicit ExchangeLibrary(quint32 seed) : m_random(seed) {}

    int tags = 12;
    int groups = 4;
    int nodes = 40;
    int relationships = 30;
    int files = 80;

    void fill()
    {
        m_freeBlocks.resize(8 * files);
        std::iota(m_freeBlocks.begin(), m_freeBlocks.end(), 1);
        std::shuffle(m_freeBlocks.begin(), m_freeBlocks.end(), m_random);
        Sql::run("BEGIN");
        addTags();
        addGroups();
        addNodes();
        addRelationships();
        for (int id = 1; id <= files; ++id)
            addFile(id);
        addBlocks();
        Sql::run("COMMIT");
    }

    int draw(int below) { return int(m_random() % quint32(below)); }

private:
    struct Block
    {
        qint64 id;
        qint64 next;
        QByteArray data;
    };

    void insert(const QString &table, const QVariantList &values)
    {
        QStringList marks;
        for (int i = 0; i < values.size(); ++i)
            marks.append("?"_s);
        QSqlQuery query;
        query.prepare("INSERT INTO %1 VALUES (%2)"_s.arg(table, marks.join(QLatin1Char(','))));
        for (const QVariant &value : values)
            query.addBindValue(value);
        if (!query.exec())
            qFatal("%s: %s", qPrintable(table), qPrintable(query.lastError().text()));
    }

    QString oddText(int number)
    {
        static const QStringList texts{
            "plain"_s,      "it's"_s,       "say \"so\""_s, "\"; DROP TABLE tags; --"_s,
            "100%1 %2 %"_s, "a, b; c\nd"_s, "../../up"_s,   "\u00e4\u4e2d\U0001f600"_s,
            "\ufeffmark"_s, " blank "_s,    "NULL"_s,       "\\x'00'"_s};
        return texts.at(draw(texts.size())) + (number > 0 ? QString::number(number) : QString());
    }

    void addTags()
    {
        for (int id = 1; id <= tags; ++id)
            insert("tags"_s, {id, oddText(id), draw(2) ? QVariant(oddText(0)) : QVariant(), 1000 + id,
                              draw(2) ? QVariant("me"_s) : QVariant()});
    }

    void addGroups()
    {
        for (int id = 1; id <= groups; ++id) {
            insert("tag_groups"_s, {id, oddText(id)});
            for (int tag = 1; tag <= tags; ++tag) {
                if (draw(4) == 0)
                    insert("tag_group_links"_s, {tag, id});
            }
        }
    }

    void addNodes()
    {
        for (int id = 1; id <= nodes; ++id) {
            insert("tb_nodes"_s, {id, 1 + draw(tags), draw(2), draw(2)});
            insert("tb_node_links"_s, {draw(id), id});
        }
    }

    void addRelationships()
    {
        QStringList paths;
        for (int i = 0; i < relationships; ++i) {
            const QString parent = paths.isEmpty() || draw(3) == 0 ? QString() : paths.at(draw(paths.size()));
            const QString tag = QString::number(1 + draw(tags));
            const QString path = parent.isEmpty() ? tag : parent + QLatin1Char('.') + tag;
            if (parent.split(QLatin1Char('.')).contains(tag) || paths.contains(path))
                continue;
            paths.append(path);
            insert("tag_relationships"_s, {path});
        }
    }

    void addFile(int id)
    {
        const int kind = draw(3);
        // Some are the same as another one.
        const QByteArray bytes =
            QByteArray("contents of ").append(QByteArray::number(draw(files))).repeated(draw(4));
        DataChecksum checksum;
        checksum.update(bytes.constData(), bytes.size());
        const QString name = kind == FileKind::hyperlink ? "https://example.org/%1"_s.arg(id) : oddText(id);
        const qint64 place = kind == FileKind::internal   ? addChain(bytes)
                             : kind == FileKind::external ? addPath(id, name)
                                                          : 0;
        const QVariant thumbnail = draw(3) == 0 ? QVariant(addThumbnail())
                                   : draw(2)    ? QVariant(0)
                                                : QVariant();
        insert("files"_s,
               {id, name, draw(3) ? QVariant(oddText(0)) : QVariant(), bytes.size(), 2000 + id, 3000 + id,
                "CODE%1"_s.arg(id), 1 + id / 10, place, thumbnail, checksum.take(), kind});
        for (int tag = 1; tag <= tags; ++tag) {
            if (draw(4) == 0)
                insert("file_tag"_s, {id, tag});
        }
    }

    qint64 addPath(int id, const QString &name)
    {
        insert("file_paths"_s, {id, "/home/me/"_s + name, "me/"_s + name});
        return id;
    }

    qint64 addThumbnail()
    {
        insert("thumbnails"_s,
               {++m_thumbnail, QByteArray("\x89PNG\0picture ", 13) + QByteArray::number(draw(99))});
        return m_thumbnail;
    }

    qint64 addChain(const QByteArray &bytes)
    {
        // An empty file has an id as well, which may be that of another file's block.
        if (bytes.isEmpty())
            return 1 + draw(5);
        const int size = 1 + bytes.size() / (1 + draw(4));
        qint64 first = 0;
        for (int at = 0; at < bytes.size(); at += size) {
            const qint64 id = m_freeBlocks.takeLast();
            if (first == 0)
                first = id;
            else
                m_blocks.last().next = id;
            m_blocks.append({id, 0, bytes.mid(at, size)});
        }
        return first;
    }

    void addBlocks()
    {
        std::shuffle(m_blocks.begin(), m_blocks.end(), m_random);
        for (const Block &block : m_blocks) {
            insert("storage"_s, {block.id, block.data});
            insert("storage_info"_s, {block.id, block.next});
        }
    }

    std::mt19937 m_random;
    QVector<Block> m_blocks;
    QVector<qint64> m_freeBlocks;
    qint64 m_thumbnail = 0;
};
