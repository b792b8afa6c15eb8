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
            m_boxes << box.title;
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
        row("mailto:someone@example.org", "mailto:someone@example.org");
        row("  example.org/page ", "http://example.org/page");
        row("localhost:8080/x", "http://localhost:8080/x");
        row("javascript:alert(1)", "");
        row("smb://server/share", "");
        row("/etc/passwd", "file:///etc/passwd");
        row("/bin/sh", "");
        row("file:///bin/sh", "");
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
        QVERIFY(!FileOpening::mayOpenCopy(nullptr, "x.desktop"_s + QChar(QChar::Null)));
        // A folder carries the same permission but starts nothing.
        QCOMPARE(FileOpening::linkTarget(folder.path()), QUrl::fromLocalFile(folder.path()));
    }

    void whatCannotBeOpenedIsTold()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("100% \u00e4#?.txt"_s);
        FileOpening::openExternalFile(nullptr, path);
        FileOpening::showInFileManager(nullptr, path);
        FileOpening::openHyperlink(nullptr, "file:///bin/sh"_s);
        QCOMPARE(m_boxes.size(), 3);
        QVERIFY(m_opened.isEmpty());

        QFile(path).open(QIODevice::WriteOnly);
        FileOpening::openExternalFile(nullptr, path);
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(path)});
    }

    void addDialogJudgesLink_data()
    {
        QTest::addColumn<bool>("isAccepted");
        addRow("https://example.org", true);
        addRow("example.org", true);
        addRow("  ", false);
        addRow("file:///etc/passwd", false);
        addRow("/no/such/file", false);
    }

    void addDialogJudgesLink()
    {
        QFETCH(bool, isAccepted);
        AddHyperlinkDialog dialog;
        dialog.findChild<QLineEdit *>("hyperlinkEdit"_s)->setText(QString::fromUtf8(QTest::currentDataTag()));
        dialog.accept();
        QCOMPARE(m_boxes.isEmpty(), isAccepted);
        QCOMPARE(dialog.result() == QDialog::Accepted, isAccepted);
    }

private:
    QStringList m_boxes;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestFileOpening)
#include "tst_fileopening.moc"
