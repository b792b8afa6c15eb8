#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/views/fileopening.h"

#include "app/messages.h"
#include "tests/support/text.h"

#include <QDesktopServices>
#include <QLineEdit>

/** Which links may be opened, which may be added, and what is said of the others. */
class TestFileOpening : public QObject
{
    Q_OBJECT

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private slots:
    void init()
    {
        m_boxes.clear();
        m_opened.clear();
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes << box.title + QLatin1Char('|') + box.text;
            return Messages::Answer();
        });
        QDesktopServices::setUrlHandler("file"_s, this, "noteOpened");
    }

    void cleanup()
    {
        QDesktopServices::unsetUrlHandler("file"_s);
        Messages::setResponder({});
    }

    void linkTarget_data()
    {
        addColumns<QString, QString>("text", "url");
        const auto row = [](const char *text, const char *url) {
            addRow(text, QString::fromUtf8(text), QString::fromUtf8(url));
        };
        row("https://example.org/a b?q=1", "https://example.org/a b?q=1");
        row("http://example.org/readme.txt", "http://example.org/readme.txt");
        row("mailto:someone@example.org", "mailto:someone@example.org");
        row("  example.org/page ", "http://example.org/page");
        row("localhost:8080/x", "http://localhost:8080/x");
        row("javascript:alert(1)", "");
        row("smb://server/share", "");
        row("/etc/passwd", "file:///etc/passwd");
        row("file:///etc/passwd", "file:///etc/passwd");
        row("/bin/sh", "");
        row("file:///bin/sh", "");
        row("/tmp/evil.desktop", "");
        row("/tmp/EVIL.Desktop", "");
        row("", "");
    }

    void linkTarget()
    {
        QFETCH(QString, text);
        QTEST(FileOpening::linkTarget(text).toString(), "url");
    }

    void programsAreNotStarted()
    {
        QTemporaryDir folder;
        const QString launcher = folder.filePath("x.desktop"_s);
        QFile(launcher).open(QIODevice::WriteOnly);
        const QString disguise = folder.filePath("letter.txt"_s);
        QVERIFY(QFile::link(launcher, disguise));
        QCOMPARE(FileOpening::linkTarget(disguise), QUrl());
        // A folder carries the same permission but starts nothing.
        QCOMPARE(FileOpening::linkTarget(folder.path()), QUrl::fromLocalFile(folder.path()));
    }

    void refusedLinkIsTold()
    {
        FileOpening::openHyperlink(nullptr, "file:///bin/sh"_s);
        QCOMPARE(m_boxes, QStringList{"Error|Failed opening hyperlink."_s});
        QVERIFY(m_opened.isEmpty());
    }

    void missingFileIsTold()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("100% \u00e4#?.txt"_s);
        FileOpening::openExternalFile(nullptr, path);
        FileOpening::showInFileManager(nullptr, path);
        QCOMPARE(m_boxes.size(), 2);
        QVERIFY(m_boxes.first().startsWith("File No Longer Present|This file is no longer present"_s));
        QVERIFY(m_opened.isEmpty());

        QFile(path).open(QIODevice::WriteOnly);
        FileOpening::openExternalFile(nullptr, path);
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(path)});
    }

    void addDialogJudgesLink_data()
    {
        addColumns<QString, QStringList>("text", "boxes");
        const QStringList empty = {"Error|Hyperlink must not be empty."_s};
        const QStringList local = {"Error|Hyperlinks is file on the local file system"_s};
        addRow("link", "https://example.org"_s, QStringList());
        addRow("no scheme", "example.org"_s, QStringList());
        addRow("empty", QString(), empty);
        addRow("blank", "  "_s, empty);
        addRow("file", "file:///etc/passwd"_s, local);
        addRow("path of no file", "/no/such/file"_s, local);
    }

    void addDialogJudgesLink()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, boxes);
        AddHyperlinkDialog dialog;
        dialog.findChild<QLineEdit *>("hyperlinkEdit"_s)->setText(text);
        dialog.show();
        dialog.accept();
        QCOMPARE(m_boxes, boxes);
        QCOMPARE(dialog.isVisible(), !boxes.isEmpty());
        QCOMPARE(dialog.result() == QDialog::Accepted, boxes.isEmpty());
    }

private:
    QStringList m_boxes;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestFileOpening)
#include "tst_fileopening.moc"
