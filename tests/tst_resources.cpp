#include "resources/resources.h"
#include "tests/support/text.h"

#include <QApplication>
#include <QImage>
#include <QTabBar>
#include <QTextDocument>

namespace {

QStringList complaints;

void noteComplaint(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        complaints.append(text);
}

QString textOf(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    return QString::fromUtf8(file.readAll());
}

QStringList captures(const QString &text, const QString &pattern)
{
    QStringList found;
    QRegularExpressionMatchIterator matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured(1));
    return found;
}

bool exists(const QString &resource)
{
    return QFile::exists(resource) && QFile(resource).size() > 0;
}

} // namespace

/** What the program names is in the resource file, and what is in there can be used. */
class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initResources();
        QVERIFY(exists(":/icons/vorna.png"_s));
        QVERIFY2(exists(":misc/vornaSplash.png"_s), "names without a slash find nothing");
    }

    void everyPictureHasBothScales()
    {
        int pictures = 0;
        QDirIterator walk(":/"_s, {"*.png"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = walk.next();
            const bool isOurs =
                path.startsWith(QLatin1String(":/icons/")) || path.startsWith(QLatin1String(":/misc/"));
            if (!isOurs || path.endsWith(QLatin1String("@2x.png")))
                continue;
            const QImage plain(path, "PNG");
            const QImage twice(path.chopped(4) + QLatin1String("@2x.png"), "PNG");
            QVERIFY2(!plain.isNull(), qPrintable(path));
            QVERIFY2(twice.size() == plain.size() * 2, qPrintable(path));
            QVERIFY2(plain.hasAlphaChannel() || path.contains(QLatin1String("Splash")), qPrintable(path));
            ++pictures;
        }
        QVERIFY(pictures > 0);
    }

    void sourcesNameNoMissingResource()
    {
        QStringList missing;
        int files = 0;
        for (const char *folder : {"app", "db", "core", "models", "fileops", "ui", "net"}) {
            QDirIterator walk(QStringLiteral(VORNA_SOURCE_DIR "/") + QLatin1String(folder),
                              {"*.cpp"_s, "*.h"_s, "*.ui"_s}, QDir::Files, QDirIterator::Subdirectories);
            for (; walk.hasNext(); ++files) {
                const QString file = textOf(walk.next());
                for (const QString &name :
                     captures(file, "[\">](:/?(?:icons|misc|help)/[^\"<%]+\\.[a-z]+)[\"<]"_s)) {
                    if (!exists(name))
                        missing.append(walk.filePath() + QLatin1String(": ") + name);
                }
            }
        }
        QVERIFY(files > 0);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
    }

    void styleSheetsAreUnderstood()
    {
        for (const QString &path : {":/misc/styleSheet.txt"_s, ":misc/tabBarStyleSheet.txt"_s}) {
            const QString sheet = textOf(path);
            const QStringList pictures = captures(sheet, "url\\(([^)]+)\\)"_s);
            QVERIFY2(!pictures.isEmpty(), qPrintable(path));
            for (const QString &picture : pictures)
                QVERIFY2(exists(picture), qPrintable(picture));

            QTabBar bar;
            bar.setObjectName("solitaryTabBar"_s);
            bar.addTab("All Tags"_s);
            complaints.clear();
            const QtMessageHandler before = qInstallMessageHandler(noteComplaint);
            bar.setStyleSheet(sheet);
            bar.ensurePolished();
            bar.grab();
            qInstallMessageHandler(before);
            QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join(QLatin1Char('\n'))));
        }
    }

    void helpLinksLeadSomewhere()
    {
        for (const QString &path : {":help/HelpFile.html"_s, ":help/QuickStartGuide.htm"_s}) {
            const QString html = textOf(path);
            QTextDocument document;
            document.setHtml(html);
            QVERIFY2(document.blockCount() > 20, qPrintable(path));
            const QStringList anchors = captures(html, "<a name=\"([^\"]+)\""_s);
            for (const QString &target : captures(html, "href=\"#([^\"]+)\""_s))
                QVERIFY2(anchors.contains(target), qPrintable(target));
            for (const QString &picture : captures(html, "<img src=\"([^\"]+)\""_s))
                QVERIFY2(exists(picture), qPrintable(picture));
        }
    }
};

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
