#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/views/fileopening.h"

#include "app/messages.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

/** Which links may be opened, which may be added, and what is said of the others. */
class TestFileOpening : public QObject
{
    Q_OBJECT

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private slots:
    void init();
    void cleanup();
    void linkTarget_data();
    void linkTarget();
    void programsAreNotStarted();
    void refusedLinkIsTold();
    void missingFileIsTold();
    void addDialogJudgesLink_data();
    void addDialogJudgesLink();

private:
    QStringList m_boxes;
    QList<QUrl> m_opened;
};

void TestFileOpening::init()
{
    m_boxes.clear();
    m_opened.clear();
    Messages::setResponder([this](const Messages::Box &box) {
        m_boxes << box.title + QLatin1Char('|') + box.text;
        return Messages::Answer();
    });
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "noteOpened");
}

void TestFileOpening::cleanup()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    Messages::setResponder({});
}

void TestFileOpening::linkTarget_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");
    const auto row = [](const char *text, const char *url) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(url);
    };
    row("https://example.org/a b?q=1", "https://example.org/a b?q=1");
    row("http://example.org/readme.txt", "http://example.org/readme.txt");
    row("ftp://example.org/x", "ftp://example.org/x");
    row("mailto:someone@example.org", "mailto:someone@example.org");
    row("  example.org/page ", "http://example.org/page");
    row("localhost:8080/x", "http://localhost:8080/x");
    row("javascript:alert(1)", "");
    row("smb://server/share", "");
    row("vnd.something:do", "");
    row("/etc/passwd", "file:///etc/passwd");
    row("file:///etc/passwd", "file:///etc/passwd");
    row("/bin/sh", "");
    row("file:///bin/sh", "");
    row("/tmp/evil.desktop", "");
    row("/tmp/EVIL.Desktop", "");
    row("", "");
    row("   ", "");
}

void TestFileOpening::linkTarget()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    QCOMPARE(FileOpening::linkTarget(text).toString(), url);
}

void TestFileOpening::programsAreNotStarted()
{
    QTemporaryDir folder;
    const QString launcher = folder.filePath(QStringLiteral("x.desktop"));
    QFile(launcher).open(QIODevice::WriteOnly);
    const QString disguise = folder.filePath(QStringLiteral("letter.txt"));
    QVERIFY(QFile::link(launcher, disguise));
    QCOMPARE(FileOpening::linkTarget(disguise), QUrl());
    // A folder carries the same permission but starts nothing.
    QCOMPARE(FileOpening::linkTarget(folder.path()), QUrl::fromLocalFile(folder.path()));
}

void TestFileOpening::refusedLinkIsTold()
{
    FileOpening::openHyperlink(nullptr, QStringLiteral("file:///bin/sh"));
    QCOMPARE(m_boxes, QStringList{QStringLiteral("Error|Failed opening hyperlink.")});
    QVERIFY(m_opened.isEmpty());
}

void TestFileOpening::missingFileIsTold()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("100% \u00e4#?.txt"));
    FileOpening::openExternalFile(nullptr, path);
    FileOpening::showInFileManager(nullptr, path);
    QCOMPARE(m_boxes.size(), 2);
    QVERIFY(
        m_boxes.first().startsWith(QStringLiteral("File No Longer Present|This file is no longer present")));
    QVERIFY(m_opened.isEmpty());

    QFile(path).open(QIODevice::WriteOnly);
    FileOpening::openExternalFile(nullptr, path);
    QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(path)});
}

void TestFileOpening::addDialogJudgesLink_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("boxes");
    const QStringList empty = {QStringLiteral("Error|Hyperlink must not be empty.")};
    const QStringList local = {QStringLiteral("Error|Hyperlinks is file on the local file system")};
    QTest::newRow("link") << QStringLiteral("https://example.org") << QStringList();
    QTest::newRow("no scheme") << QStringLiteral("example.org") << QStringList();
    QTest::newRow("empty") << QString() << empty;
    QTest::newRow("blank") << QStringLiteral("  ") << empty;
    QTest::newRow("file") << QStringLiteral("file:///etc/passwd") << local;
    QTest::newRow("path of no file") << QStringLiteral("/no/such/file") << local;
}

void TestFileOpening::addDialogJudgesLink()
{
    QFETCH(QString, text);
    QFETCH(QStringList, boxes);
    AddHyperlinkDialog dialog;
    dialog.findChild<QLineEdit *>(QStringLiteral("hyperlinkEdit"))->setText(text);
    dialog.show();
    dialog.accept();
    QCOMPARE(m_boxes, boxes);
    QCOMPARE(dialog.isVisible(), !boxes.isEmpty());
    QCOMPARE(dialog.result() == QDialog::Accepted, boxes.isEmpty());
}

QTEST_MAIN(TestFileOpening)
#include "tst_fileopening.moc"
