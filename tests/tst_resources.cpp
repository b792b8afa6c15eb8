#include "resources/resources.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTabBar>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTreeView>

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
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList captures(const QString &text, const QString &pattern)
{
    QStringList found;
    QRegularExpressionMatchIterator matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured(1));
    return found;
}

QStringList sourceFiles()
{
    const QStringList folders{QStringLiteral("app"),    QStringLiteral("db"),      QStringLiteral("core"),
                              QStringLiteral("models"), QStringLiteral("fileops"), QStringLiteral("ui"),
                              QStringLiteral("net")};
    const QStringList suffixes{QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")};
    QStringList files;
    for (const QString &folder : folders) {
        QDirIterator walk(QStringLiteral(VORNA_SOURCE_DIR "/") + folder, suffixes, QDir::Files,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            files.append(walk.next());
    }
    return files;
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
    void initTestCase();
    void everyPictureHasBothScales();
    void filePicturesHaveTheSizeOfThumbnails_data();
    void filePicturesHaveTheSizeOfThumbnails();
    void sourcesNameNoMissingResource();
    void styleSheetIsUnderstood_data();
    void styleSheetIsUnderstood();
    void relationshipTreeStaysReadableInDarkPalette();
    void helpLinksLeadSomewhere_data();
    void helpLinksLeadSomewhere();
};

void TestResources::initTestCase()
{
    initResources();
    QVERIFY(exists(QStringLiteral(":/icons/vorna.png")));
    QVERIFY2(exists(QStringLiteral(":misc/vornaSplash.png")), "names without a slash find nothing");
}

void TestResources::everyPictureHasBothScales()
{
    int pictures = 0;
    QDirIterator walk(QStringLiteral(":/"), {QStringLiteral("*.png")}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        if (!path.startsWith(QLatin1String(":/icons/")) && !path.startsWith(QLatin1String(":/misc/")))
            continue;
        if (path.endsWith(QLatin1String("@2x.png")))
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

void TestResources::filePicturesHaveTheSizeOfThumbnails_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"paper", "pdf", "word", "excel", "music", "video", "loadingthumbnail"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestResources::filePicturesHaveTheSizeOfThumbnails()
{
    QFETCH(QString, name);
    const QImage picture(QStringLiteral(":/icons/%1.png").arg(name), "PNG");
    QCOMPARE(picture.size(), QSize(128, 128));
    QCOMPARE(qAlpha(picture.pixel(0, 0)), 0);
}

void TestResources::sourcesNameNoMissingResource()
{
    const QStringList files = sourceFiles();
    QVERIFY(!files.isEmpty());
    QStringList missing;
    for (const QString &file : files) {
        const QStringList names =
            captures(textOf(file), QStringLiteral("[\">](:/?(?:icons|misc|help)/[^\"<%]+\\.[a-z]+)[\"<]"));
        for (const QString &name : names) {
            if (!exists(name))
                missing.append(file + QLatin1String(": ") + name);
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

void TestResources::styleSheetIsUnderstood_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("application") << QStringLiteral(":/misc/styleSheet.txt");
    QTest::newRow("tab bar") << QStringLiteral(":misc/tabBarStyleSheet.txt");
}

void TestResources::styleSheetIsUnderstood()
{
    QFETCH(QString, path);
    const QString sheet = textOf(path);
    const QStringList pictures = captures(sheet, QStringLiteral("url\\(([^)]+)\\)"));
    QVERIFY(!pictures.isEmpty());
    for (const QString &picture : pictures)
        QVERIFY2(exists(picture), qPrintable(picture));

    QTabBar bar;
    bar.setObjectName(QStringLiteral("solitaryTabBar"));
    bar.addTab(QStringLiteral("All Tags"));
    complaints.clear();
    const QtMessageHandler before = qInstallMessageHandler(noteComplaint);
    bar.setStyleSheet(sheet);
    bar.ensurePolished();
    bar.grab();
    qInstallMessageHandler(before);
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join(QLatin1Char('\n'))));
}

void TestResources::relationshipTreeStaysReadableInDarkPalette()
{
    const QPalette light = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(53, 53, 53)));
    QTreeView tree;
    tree.setObjectName(QStringLiteral("trView"));
    tree.setStyleSheet(textOf(QStringLiteral(":/misc/styleSheet.txt")));
    tree.resize(80, 80);
    tree.ensurePolished();
    const QColor ground = tree.grab().toImage().pixelColor(40, 60);
    const QColor text = tree.palette().color(QPalette::Text);
    QApplication::setPalette(light);
    QCOMPARE(ground, QColor(230, 255, 230));
    QCOMPARE(text, QColor(Qt::black));
}

void TestResources::helpLinksLeadSomewhere_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("manual") << QStringLiteral(":help/HelpFile.html");
    QTest::newRow("quick start") << QStringLiteral(":help/QuickStartGuide.htm");
}

void TestResources::helpLinksLeadSomewhere()
{
    QFETCH(QString, path);
    const QString html = textOf(path);
    QTextDocument document;
    document.setHtml(html);
    QVERIFY(document.blockCount() > 20);

    const QStringList anchors = captures(html, QStringLiteral("<a name=\"([^\"]+)\""));
    for (const QString &target : captures(html, QStringLiteral("href=\"#([^\"]+)\"")))
        QVERIFY2(anchors.contains(target), qPrintable(target));
    for (const QString &picture : captures(html, QStringLiteral("<img src=\"([^\"]+)\"")))
        QVERIFY2(exists(picture), qPrintable(picture));
}

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
