#pragma once

#include "db/autolinks/autolinksync.h"
#include "tests/support/localcollection.h"

/** A database beside a folder "in", and three nodes to link it to: one below another, and another one. */
class LinkedFolderTest : public QObject
{
protected:
    void openFolder()
    {
        SettingsSandbox::clear();
        m_box = std::make_unique<LocalCollection>();
        const QVector<qint64> tags = box().addTags({"top"_s, "below"_s, "other"_s});
        m_top = box().addNode(tags.at(0));
        m_below = box().manager()->addNodeBelow(tags.at(1), m_top);
        m_other = box().addNode(tags.at(2));
        QDir().mkpath(in());
        hurry();
    }

    LocalCollection &box() { return *m_box; }
    QString in() { return box().filePath("in"_s); }
    QString filePath(const QString &name) { return box().filePath("in/"_s + name); }
    QString write(const QString &name, const QByteArray &bytes) { return box().write("in/"_s + name, bytes); }
    AutoLinkSync &sync() { return *box().manager()->findChild<AutoLinkSync *>(); }
    void hurry(int milliseconds = 0, int lookBack = 30000) { sync().setTimes(milliseconds, lookBack); }
    TBnode *node(qint64 id) { return box().tree().nodeById(id); }
    void link(qint64 nodeId, const QString &folder) { box().tree().links().link(nodeId, folder); }
    QString linkId() { return box().manager()->autoLinks().keys().value(0); }
    /** A round of looking that begins from now on. */
    void waitForRound()
    {
        QSignalSpy rounds(&sync(), &AutoLinkSync::roundDone);
        QVERIFY(rounds.wait(10000));
    }
    /** The links of the database: "relative path|node". */
    QStringList links()
    {
        return box().rows("SELECT link_rel_path,node_id FROM tb_autolinks LEFT JOIN tb_nodes_autolinks ON "
                          "tb_nodes_autolinks.link_id=tb_autolinks.link_id ORDER BY 1,2");
    }
    int fileCount() { return box().manager()->files().size(); }
    /** The files as the manager knows them: "name:tag,tag". */
    QString contents()
    {
        QStringList texts;
        for (const File *file : box().manager()->files()) {
            QStringList tags;
            for (const qint64 tag : file->tags())
                tags.append(box().manager()->tagName(tag));
            texts.append(file->name() + QLatin1Char(':') + tags.join(QLatin1Char(',')));
        }
        texts.sort();
        return texts.join(QLatin1Char(' '));
    }

    std::unique_ptr<LocalCollection> m_box;
    qint64 m_top = 0;
    qint64 m_below = 0;
    qint64 m_other = 0;
};
