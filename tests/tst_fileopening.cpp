#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/views/fileopening.h"

#include "app/messages/desktopopener.h"
#include "app/messages/messages.h"
#include "tests/support/silentdisk.h"
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
        row("file://localhost/etc/passwd", "file:///etc/passwd");
        row("file://host/etc/passwd", "");
        row("//host/etc/passwd", "file:///host/etc/passwd");
        row("file:///etc/passwd%00.txt", "");
        row("file:///bin/sh%00.txt", "");
        row("file:///bin/sh/", "");
        row("file:///etc/passwd/", "file:///etc/passwd");
        row("/bin/../bin/sh///", "");
        row("/dev/zero", "");
        row("file:etc/passwd", "");
        row(":/misc/styleSheet.txt", "");
        row("", "");
    }

    void linkTarget()
    {
        QFETCH(QString, text);
        QTEST(FileOpening::linkTarget(text).toString(), "url");
    }

    void programsAreNotStarted_data()
    {
        addColumns<QString, QByteArray, bool, bool>("name", "bytes", "isExecutable", "isOpened");
        addRow("text", "a.txt"_s, QByteArray("text"), false, true);
        addRow("launcher", "EVIL.Desktop"_s, QByteArray("[Desktop Entry]"), false, false);
        addRow("launcher by its contents", "EVIL"_s, QByteArray("[Desktop Entry]\nType=Application"), false,
               false);
        addRow("foreign program by its contents", "a"_s, QByteArray("MZ\1"), false, false);
        addRow("text about launchers", "a.txt"_s, QByteArray("[Desktop Entry]"), false, true);
        addRow("script without an ending", "a"_s, QByteArray("#!/bin/sh\n"), false, true);
        addRow("script to be read", "a.sh"_s, QByteArray("#!/bin/sh\n"), false, true);
        addRow("script to be run", "a.sh"_s, QByteArray("true\n"), true, false);
        addRow("script under a harmless name", "a.txt"_s, QByteArray("#!/bin/sh\n"), true, false);
        addRow("program", "a"_s, QByteArray("\177ELF"), true, false);
        addRow("who knows what", "a"_s, QByteArray("\1\2\3"), true, false);
        // On a disk of another system all files are executable.
        addRow("picture", "a.png"_s, QByteArray("\x89PNG\r\n\x1a\n"), true, true);
        addRow("document", "a.pdf"_s, QByteArray("%PDF-1.4"), true, true);
    }

    // By its own name, and by that of a link to it.
    void programsAreNotStarted()
    {
        QFETCH(QString, name);
        QFETCH(bool, isExecutable);
        QFETCH(bool, isOpened);
        QTemporaryDir folder;
        QFile file(folder.filePath(name));
        QFETCH(QByteArray, bytes);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        if (isExecutable)
            QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser));
        const QString disguise = folder.filePath("letter.odt"_s);
        QVERIFY(QFile::link(file.fileName(), disguise));
        for (const QString &path : {file.fileName(), disguise}) {
            const QUrl url = QUrl::fromLocalFile(path);
            QCOMPARE(FileOpening::linkTarget(url.toString()), isOpened ? url : QUrl());
            FileOpening::openExternalFile(nullptr, path);
            QTRY_COMPARE(m_opened.size() + m_boxes.size(), 1);
            QCOMPARE(m_opened, isOpened ? QList<QUrl>{url} : QList<QUrl>());
            m_opened.clear();
            m_boxes.clear();
        }
        QCOMPARE(FileOpening::mayOpenCopy(nullptr, name + QChar(QChar::Null)), !name.endsWith("Desktop"_s));
        // A folder carries the same permission but starts nothing.
        QCOMPARE(FileOpening::linkTarget(folder.path()), QUrl::fromLocalFile(folder.path()));
        m_boxes.clear();
        FileOpening::openExternalFile(nullptr, "/dev/zero"_s);
        QTRY_COMPARE(m_boxes.size(), 1);
        QVERIFY(m_opened.isEmpty());
    }

    void whatCannotBeOpenedIsTold()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("100% \u00e4#?.txt"_s);
        FileOpening::openExternalFile(nullptr, path);
        FileOpening::showInFileManager(nullptr, path);
        FileOpening::openHyperlink(nullptr, "file:///bin/sh"_s);
        QTRY_COMPARE(m_boxes.size(), 3);
        QVERIFY(m_opened.isEmpty());

        QFile(path).open(QIODevice::WriteOnly);
        FileOpening::openExternalFile(nullptr, path);
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(path)});
    }

    void aDiskThatDoesNotAnswerHoldsNoWindow()
    {
        QTemporaryDir folder;
        SilentDisk disk(folder.filePath("silent"_s));
        if (!disk.isThere())
            QSKIP("Only root may mount.");
        QWidget window;
        const auto isQuick = [&] {
            QElapsedTimer passed;
            passed.start();
            FileOpening::openExternalFile(&window, disk.path("a.txt"_s));
            FileOpening::showInFileManager(&window, disk.path("b.txt"_s));
            return passed.elapsed() < 200;
        };
        // A busy machine may be late once, a window that waits for the disk always is.
        QVERIFY(isQuick() || isQuick() || isQuick());
        disk.unplug();
        // The second wish has taken the place of the first one.
        QTRY_COMPARE(m_boxes, QStringList{"File No Longer Present"_s});
    }

    void whatNoProgramOpensIsTold_data()
    {
        addColumns<QString, int, QString>("name", "exitCode", "title");
        addRow("opened", "a b.txt"_s, 0, QString());
        addRow("a program that failed itself", "a b.txt"_s, 1, QString());
        addRow("no tool", "a b.txt"_s, 3, "Error opening file"_s);
        addRow("nothing fits", "a b.txt"_s, 4, "Error opening file"_s);
        addRow("folder", QString(), 3, "Error opening folder"_s);
    }

    void whatNoProgramOpensIsTold()
    {
        QFETCH(QString, name);
        QFETCH(int, exitCode);
        QFETCH(QString, title);
        QTemporaryDir folder;
        QFile program(folder.filePath("opener"_s));
        const QByteArray text =
            "#!/bin/sh\nprintf %s \"$1\" >\"${0%/*}/given\"\necho >\"${0%/*}/end\"\nexit ";
        QVERIFY(program.open(QIODevice::WriteOnly) && program.write(text + QByteArray::number(exitCode)) > 0);
        QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        program.close();
        const DesktopOpener opener(program.fileName());
        const QUrl url = QUrl::fromLocalFile(folder.filePath(name));
        QVERIFY(QDesktopServices::openUrl(url));
        QTRY_VERIFY(QFile::exists(folder.filePath("end"_s)));
        QTRY_COMPARE(m_boxes, title.isEmpty() ? QStringList() : QStringList(title));
        QFile given(folder.filePath("given"_s));
        QVERIFY(given.open(QIODevice::ReadOnly));
        QCOMPARE(given.readAll(), url.toEncoded());
    }

    void addDialogJudgesLink_data()
    {
        QTest::addColumn<bool>("isAccepted");
        addRow("https://example.org", true);
        addRow("example.org", true);
        addRow("  ", false);
        addRow("file:///etc/passwd", false);
        addRow("/no/such/file", false);
        addRow("http://my server/page", false);
        addRow("http://example.org/a\u2028b", false);
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

    void addDialogKeepsWhatIsNotTaken()
    {
        QStringList taken;
        AddHyperlinkDialog dialog;
        dialog.setTaker([&taken](const QString &text, const QString &description) {
            taken.append(text + QLatin1Char('|') + description);
            return taken.size() > 1;
        });
        auto *edit = dialog.findChild<QLineEdit *>("hyperlinkEdit"_s);
        edit->setText(" HTTP://Example.org/%7Ea b "_s);
        dialog.findChild<QLineEdit *>("descriptionEdit"_s)->setText("d"_s);
        dialog.show();
        dialog.accept();
        QVERIFY(dialog.isVisible() && m_boxes.isEmpty());
        dialog.accept();
        // It is on its way, while another one is settled.
        dialog.settle({"http://example.org"_s}, true);
        QVERIFY(dialog.isVisible() && dialog.isWaiting());
        dialog.settle({edit->text().trimmed()}, true);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(taken, QStringList({"HTTP://Example.org/%7Ea b|d"_s, "HTTP://Example.org/%7Ea b|d"_s}));
    }

private:
    QStringList m_boxes;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestFileOpening)
#include "tst_fileopening.moc"
