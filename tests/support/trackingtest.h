#pragma once

#include "tests/support/addingfixture.h"

#include <utime.h>

/** Three external files, apple, banana and cherry, with a tag each, and what the worker tells of them. */
class TrackingTest : public QObject
{
protected:
    void setUp()
    {
        m_fixture = std::make_unique<AddingFixture>(makeTestDatabase());
        m_fixture->database().addTags(3);
        m_fixture->add({m_fixture->write("a.txt"_s, "apple")}, {1});
        m_fixture->add({m_fixture->write("b.txt"_s, "banana")}, {2});
        m_fixture->add({m_fixture->write("c.txt"_s, "cherry")}, {3});
        for (const char *name : {"a.txt", "b.txt", "c.txt"})
            setTime(path(name), 1000000000);
        m_modified = std::make_unique<QSignalSpy>(&provider(), &FileOperationProvider::filesModified);
        m_present = std::make_unique<QSignalSpy>(&provider(), &FileOperationProvider::present);
        m_missing = std::make_unique<QSignalSpy>(&provider(), &FileOperationProvider::noLongerPresent);
        Sql::run("UPDATE files SET modification_date=1000000000");
    }

    void tearDown()
    {
        m_modified.reset();
        m_present.reset();
        m_missing.reset();
        m_fixture.reset();
    }

    static void setTime(const QString &path, qint64 seconds)
    {
        const utimbuf times = {seconds, seconds};
        QCOMPARE(::utime(QFile::encodeName(path).constData(), &times), 0);
    }

    FileOperationProvider &provider() { return m_fixture->provider(); }
    QString path(const char *name) const { return m_fixture->path(QLatin1String(name)); }

    /** "name|size|time: tags" of each file. */
    static QStringList tagged()
    {
        QStringList lines;
        for (const QString &file : Sql::rows("SELECT file_id, file_name, file_size, modification_date "
                                             "FROM files ORDER BY file_id")) {
            const QStringList tags =
                Sql::rows("SELECT tag_name FROM file_tag, tags WHERE file_tag.tag_id=tags.tag_id AND "
                          "file_id=%1 ORDER BY tag_name"_s.arg(file.section(QLatin1Char('|'), 0, 0)));
            lines.append(file.section(QLatin1Char('|'), 1) + ": "_s + tags.join(QLatin1Char(',')));
        }
        return lines;
    }

    std::unique_ptr<AddingFixture> m_fixture;
    std::unique_ptr<QSignalSpy> m_modified;
    std::unique_ptr<QSignalSpy> m_present;
    std::unique_ptr<QSignalSpy> m_missing;
};
