#include "fileops/pictures/picturepool.h"
#include "fileops/pictures/thumbnailcanvas.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/provider/postgresfileoperationprovider.h"
#include "fileops/provider/sqlitefileoperationprovider.h"
#include "fileops/provider/thumbnailcache.h"
#include "fileops/worker/fileoperationworker.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <QImageWriter>
#include <QPainter>
#include <QProcess>

#include <sys/stat.h>

namespace {
QImage coloured(const QSize &size, const QColor &colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

/** The part of a thumbnail that is not transparent. */
QRect opaquePart(const QImage &image)
{
    QRect part;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                part |= QRect(x, y, 1, 1);
        }
    }
    return part;
}

QByteArray pngOf(const QImage &image)
{
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}

/** A square black picture, a thousand times larger when it is unpacked. */
QByteArray blackPng(int edge)
{
    QImage image(edge, edge, QImage::Format_Mono);
    image.fill(0);
    return pngOf(image);
}
} // namespace

class TestThumbnails : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        const bool isOnServer = qstrcmp(QTest::currentDataTag(), "postgres") == 0;
        m_settings = std::make_unique<SettingsSandbox>();
        PicturePool::instance().setLimits(PictureUse::Thumbnail, {768LL * 1024 * 1024, 5});
        m_database = makeTestDatabase(isOnServer);
        if (isOnServer)
            makeProvider<PostgresFileOperationProvider>();
        else
            makeProvider<SqliteFileOperationProvider>();
    }

    void cleanup()
    {
        m_provider.reset();
        m_database.reset();
        m_settings.reset();
    }

    void fitsThePictureIntoTheCanvas_data()
    {
        addColumns<QSize, QString, QRect>("size", "name", "part");
        addRow("wide", QSize(3000, 1000), "p.png"_s, QRect(0, 42, 128, 43));
        addRow("high", QSize(1000, 3000), "p.png"_s, QRect(42, 0, 43, 128));
        addRow("square", QSize(640, 640), "p.jpg"_s, QRect(0, 0, 128, 128));
        addRow("small ones grow", QSize(20, 10), "p.png"_s, QRect(0, 32, 128, 64));
        addRow("a line stays visible", QSize(4000, 3), "p.png"_s, QRect(0, 63, 128, 1));
        addRow("half a pixel rounds up", QSize(256, 85), "p.png"_s, QRect(0, 42, 128, 43));
        addRow("large", QSize(9000, 8000), "p.png"_s, QRect(0, 7, 128, 114));
    }

    void fitsThePictureIntoTheCanvas()
    {
        QFETCH(QSize, size);
        QFETCH(QString, name);
        const QImage thumbnail = ThumbnailMaker::thumbnailOf(save(name, coloured(size, Qt::red)));
        QCOMPARE(thumbnail.size(), QSize(128, 128));
        QTEST(opaquePart(thumbnail), "part");
    }

    void keepsColoursAndTransparency()
    {
        QImage picture(400, 400, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        QPainter(&picture).fillRect(0, 200, 400, 200, QColor(10, 200, 30));
        // Read by its content, not by its name.
        QVERIFY(QFile::rename(save("half.png"_s, picture), m_folder.filePath("half.jpg"_s)));
        const QImage thumbnail = ThumbnailMaker::thumbnailOf(m_folder.filePath("half.jpg"_s));
        QCOMPARE(qAlpha(thumbnail.pixel(64, 20)), 0);
        QCOMPARE(thumbnail.pixel(64, 100), qRgba(10, 200, 30, 255));
    }

    void turnsPicturesUpright()
    {
        QImageWriter writer(m_folder.filePath("turned.jpg"_s), "JPG");
        writer.setTransformation(QImageIOHandler::TransformationRotate90);
        QVERIFY(writer.write(coloured({3000, 1000}, Qt::red)));
        QCOMPARE(opaquePart(ThumbnailMaker::thumbnailOf(writer.fileName())), QRect(42, 0, 43, 128));
    }

    void reducedReadingLooksTheSame_data()
    {
        addColumns<QSize, QString>("size", "name");
        addRow("whole blocks", QSize(2400, 1600), "p.jpg"_s);
        addRow("cut blocks", QSize(2401, 1597), "p.jpg"_s);
        addRow("line by line", QSize(2401, 1597), "p.png"_s);
    }

    void reducedReadingLooksTheSame()
    {
        QFETCH(QSize, size);
        QFETCH(QString, name);
        QImage spots(24, 16, QImage::Format_RGB32);
        for (int i = 0; i < 24 * 16; ++i)
            spots.setPixel(i % 24, i / 24, qRgb(i * 37 % 256, i * 91 % 256, i * 53 % 256));
        const QString path = save(name, spots.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        const QImage picture(path);
        const QImage whole = ThumbnailCanvas::with(picture, picture.size());
        const QImage reduced = ThumbnailMaker::thumbnailOf(path);
        for (int i = 0; i < 128 * 128; ++i) {
            const QColor one = whole.pixelColor(i % 128, i / 128);
            const QColor other = reduced.pixelColor(i % 128, i / 128);
            QVERIFY(qAbs(one.red() - other.red()) <= 3 && qAbs(one.green() - other.green()) <= 3 &&
                    qAbs(one.blue() - other.blue()) <= 3 && one.alpha() == other.alpha());
        }
    }

    void drawsWithoutPicturesOfOtherFiles()
    {
        const QString pipe = m_folder.filePath("waiting"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const QByteArray svg =
            "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
            "width='90000' height='30000'><rect width='90000' height='30000' fill='red'/>"
            "<image xlink:href='" +
            pipe.toUtf8() + "' width='9' height='9'/></svg>";
        const QImage thumbnail = ThumbnailMaker::thumbnailOf(m_folder.write("p.svg"_s, svg));
        QCOMPARE(opaquePart(thumbnail), QRect(0, 42, 128, 43));
        QCOMPARE(thumbnail.pixel(64, 64), qRgb(255, 0, 0));
        QCOMPARE(QProcess::execute("gzip"_s, {"-S"_s, "z"_s, m_folder.filePath("p.svg"_s)}), 0);
        QCOMPARE(ThumbnailMaker::thumbnailOf(m_folder.filePath("p.svgz"_s)), thumbnail);
    }

    void readsWholeJpegsOnly_data()
    {
        addColumns<int, bool, int, int, bool>("edge", "isProgressive", "percent", "trailing", "isRead");
        addRow("cut", 1000, false, 50, 0, false);
        addRow("cut, progressive", 1000, true, 50, 0, false);
        addRow("more behind it", 1000, false, 100, 70000, true);
        addRow("large", 10100, false, 100, 0, true);
        addRow("large, progressive", 10100, true, 100, 0, true);
    }

    void readsWholeJpegsOnly()
    {
        QFETCH(int, edge);
        QFETCH(bool, isProgressive);
        QFETCH(int, percent);
        QFETCH(int, trailing);
        QImage picture(edge, edge, QImage::Format_Grayscale8);
        picture.fill(70);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImageWriter writer(&buffer, "jpg");
        writer.setProgressiveScanWrite(isProgressive);
        QVERIFY(writer.write(picture));
        bytes = bytes.left(int(qint64(bytes.size()) * percent / 100)) + QByteArray(trailing, 'x');
        QTEST(!ThumbnailMaker::thumbnailOf(m_folder.write("p.jpg"_s, bytes)).isNull(), "isRead");
    }

    void refusesWhatIsNoPicture()
    {
        // Each draws the one before ten times.
        QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>"
                         "<g id='a0'><rect width='9' height='9'/></g>";
        for (int i = 1; i < 9; ++i) {
            svg += "<g id='a" + QByteArray::number(i) + "'>" +
                   QByteArray("<use xlink:href='#a" + QByteArray::number(i - 1) + "'/>").repeated(10) +
                   "</g>";
        }
        const QByteArray gif = QByteArray::fromHex("474946383961a861a861800000000000ffffff"
                                                   "2c0000000001000100000202440100"
                                                   "3b");
        const QString pipe = m_folder.filePath("pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!make(pipe, 1, true));
        // The last one takes gigabytes, or more time than there is.
        for (const QByteArray &bytes :
             {QByteArray("text"), QByteArray(), QByteArray("\x89PNG\r\n\x1a\n", 8), gif, svg + "</svg>"})
            QVERIFY(!make(m_folder.write("bad.png"_s, bytes), 1, true));
        QCOMPARE(Sql::count("thumbnails"_s), 0);
        QVERIFY(make(m_folder.write("good.png"_s, blackPng(3000)), 1, true));
    }

    void storesAndReplacesThumbnails_data() { addBackEnds(); }

    void storesAndReplacesThumbnails()
    {
        const QString red = save("a.png"_s, coloured({300, 200}, Qt::red));
        const QString blue = save("b.png"_s, coloured({300, 200}, Qt::blue));
        QVERIFY(make(red, 7, true) && make(red, 8, true) && make(blue, 7, false) && !make(blue, 8, true));
        QCOMPARE(storedColours(), QVector<QColor>({Qt::blue, Qt::red}));
        QCOMPARE(Sql::count("thumbnails WHERE length(thumbnail)>4096"_s), 0);
    }

    void loadsThumbnailsInOrder_data() { addBackEnds(); }

    void loadsThumbnailsInOrder()
    {
        addThumbnail(1, Qt::red);
        addThumbnail(2, Qt::blue);
        m_database->addFile(3, 2, 0, 0);
        QVector<qint64> ids;
        QVector<QRgb> colours;
        connect(m_provider.get(), &FileOperationProvider::thumbnailLoaded, this,
                [&ids, &colours](qlonglong id, QImage *image) {
                    ids.append(id);
                    colours.append(image->isNull() ? 0 : image->pixel(1, 1));
                    delete image;
                });
        m_provider->loadThumbnails({2, -1, 0, 3});
        m_provider->loadThumbnails({1, 99});
        QTRY_COMPARE(ids, QVector<qint64>({2, 3, 1, 99}));
        QCOMPARE(colours, QVector<QRgb>({qRgb(0, 0, 255), 0, qRgb(255, 0, 0), 0}));
    }

    void remakesThumbnailsOfExternalFiles_data() { addBackEnds(); }

    void remakesThumbnailsOfExternalFiles()
    {
        for (int id = 1; id <= 4; ++id)
            addThumbnail(id, Qt::red, id == 4 ? 1 : 0);
        m_database->addFile(5, 0, 0, 5);
        const QString blue = save("blue.png"_s, coloured({300, 300}, Qt::blue));
        const QString broken = m_folder.write("broken.png"_s, "no picture");
        for (const auto &path : {qMakePair(1, blue), qMakePair(2, broken), qMakePair(3, blue),
                                 qMakePair(4, blue), qMakePair(5, blue)})
            m_database->run(
                "INSERT INTO file_paths VALUES (%1, '%2', '')"_s.arg(path.first).arg(path.second));
        QSignalSpy remade(m_provider.get(), &FileOperationProvider::remadeAllThumbnails);
        QSignalSpy progress(m_provider.get(), &FileOperationProvider::filesOperationProgress);
        QSignalSpy told(m_provider.get(), &FileOperationProvider::error);
        // More than go at once: an internal file, whose place of storage is another one's path.
        m_provider->remakeThumbnails(QVector<qint64>(200, 4) << 1 << 99);
        QTRY_COMPARE(remade.count(), 1);
        QCOMPARE(told.count(), 0);
        QCOMPARE(progress.first().first().toString(), "Remaking thumbnails..."_s);
        QCOMPARE(storedColours(), QVector<QColor>({Qt::blue, Qt::red, Qt::red, Qt::red}));
        m_provider->remakeThumbnails({});
        QTRY_COMPARE(remade.count(), 2);
        QCOMPARE(storedColours(), QVector<QColor>({Qt::blue, Qt::red, Qt::blue, Qt::red}));
        QTRY_COMPARE(told.count(), 1);
        QVERIFY(told.first().first().toString().endsWith(":\n\n"_s + broken));
    }

    void cacheShowsAPlaceholderFirst()
    {
        addThumbnail(1, Qt::red);
        ThumbnailCache cache;
        cache.setProvider(m_provider.get());
        cache.setProvider(m_provider.get());
        QSignalSpy loaded(&cache, &ThumbnailCache::imageLoaded);
        QCOMPARE(cache.thumbnail(0), nullptr);
        QCOMPARE(cache.thumbnail(-4), nullptr);
        QImage *image = cache.thumbnail(1);
        QVERIFY(image);
        QVERIFY(image->size() != QSize(128, 128) || image->pixel(1, 1) != qRgb(255, 0, 0));
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(loaded.first().at(0).toLongLong(), 1LL);
        QCOMPARE(cache.thumbnail(1), image);
        QCOMPARE(image->pixel(1, 1), qRgb(255, 0, 0));
        // A file without a thumbnail keeps the paper.
        m_database->addFile(3, 2, 0, 0);
        image = cache.thumbnail(3);
        QTRY_COMPARE(loaded.count(), 2);
        QCOMPARE(*image, QImage(":/icons/paper.png"_s));
    }

    void failedLoadsAreAskedForAgain_data() { addBackEnds(); }

    void failedLoadsAreAskedForAgain()
    {
        const bool isLocal = m_database->details().type() == Constants::localDatabase;
        addThumbnail(1, Qt::red);
        addThumbnail(2, Qt::red);
        QVERIFY(Sql::run(isLocal ? "BEGIN EXCLUSIVE" : "BEGIN"));
        QVERIFY(isLocal || Sql::run("LOCK TABLE thumbnails"));
        ThumbnailCache cache;
        cache.setProvider(m_provider.get());
        ErrorCount errors(*m_provider);
        QElapsedTimer clock;
        clock.start();
        cache.thumbnail(1);
        cache.thumbnail(2);
        QTRY_VERIFY(!cache.contains(1) && !cache.contains(2));
        QVERIFY(clock.elapsed() < 2000); // others wait for five seconds
        QCOMPARE(errors.count(), 0);
        QVERIFY(Sql::run("ROLLBACK"));
        QSignalSpy loaded(&cache, &ThumbnailCache::imageLoaded);
        cache.thumbnail(1);
        QTRY_COMPARE(loaded.count(), 1);
        QCOMPARE(cache.thumbnail(1)->pixel(1, 1), qRgb(255, 0, 0));
    }

    void whatWasScrolledPastIsNotLoaded()
    {
        setCacheSize(10);
        for (int id = 1; id <= 60; ++id)
            addThumbnail(id, Qt::red);
        QVector<qint64> loaded;
        connect(m_provider.get(), &FileOperationProvider::thumbnailLoaded, this,
                [&loaded](qlonglong id) { loaded.append(id); });
        ThumbnailCache cache;
        cache.setProvider(m_provider.get());
        for (int id = 1; id <= 60; ++id)
            cache.thumbnail(id);
        QTRY_COMPARE(loaded, QVector<qint64>({51, 52, 53, 54, 55, 56, 57, 58, 59, 60}));
        QTRY_VERIFY(!m_provider->isBusy());
        QCOMPARE(loaded.size(), 10);
    }

    void cacheReloadsOnlyWhatItHolds()
    {
        addThumbnail(1, Qt::red);
        addThumbnail(2, Qt::blue);
        ThumbnailCache cache;
        cache.setProvider(m_provider.get());
        QSignalSpy loaded(&cache, &ThumbnailCache::imageLoaded);
        cache.thumbnail(1);
        QTRY_COMPARE(loaded.count(), 1);
        cache.reloadHeld({1, 2});
        QTRY_COMPARE(loaded.count(), 2);
        QTRY_VERIFY(!m_provider->isBusy());
        QVERIFY(!cache.contains(2));
        cache.reloadThumbnail(2);
        QTRY_COMPARE(loaded.count(), 3);
        cache.remove(1);
        QVERIFY(!cache.contains(1) && cache.contains(2));
    }

    void cacheNeverShrinksToNothing()
    {
        setCacheSize(3);
        ThumbnailCache cache;
        for (int id = 1; id <= 4; ++id)
            QVERIFY(cache.thumbnail(id));
        QVERIFY(!cache.contains(1));
        QVERIFY(cache.contains(2));
        cache.thumbnail(2);
        QVERIFY(cache.thumbnail(5));
        QVERIFY(cache.contains(2) && !cache.contains(3));
        setCacheSize(0);
        cache.readSettings();
        QVERIFY(cache.contains(5) && !cache.contains(2));
        QVERIFY(cache.thumbnail(6));
    }

private:
    /** In the middle of each thumbnail, in the order of their ids. */
    static QVector<QColor> storedColours()
    {
        QVector<QColor> colours;
        QSqlQuery query("SELECT thumbnail FROM thumbnails ORDER BY thumbnail_id"_s);
        while (query.next())
            colours.append(QImage::fromData(query.value(0).toByteArray(), "PNG").pixelColor(64, 64));
        return colours;
    }

    void addThumbnail(qint64 fileId, const QColor &colour, int internal = 2)
    {
        QSqlQuery query;
        query.prepare("INSERT INTO thumbnails VALUES (?, ?)"_s);
        query.addBindValue(fileId + 1000);
        query.addBindValue(pngOf(coloured({128, 128}, colour)));
        QVERIFY(query.exec() && m_database->addFile(fileId, internal, 0, fileId, fileId + 1000));
    }

    /** The path of a picture in the folder. */
    QString save(const QString &name, const QImage &image) const
    {
        if (!image.save(m_folder.filePath(name)))
            qFatal("no picture can be saved");
        return m_folder.filePath(name);
    }

    bool make(const QString &path, qint64 id, bool isNew)
    {
        if (!QSqlDatabase::contains(Constants::workerConnection))
            m_database->openWorkerConnection();
        FileOperationWorker worker(Constants::workerConnection, m_database->details(),
                                   m_database->constructor());
        return ThumbnailMaker(worker).makeThumbnail(path, id, isNew);
    }

    template <class Provider>
    void makeProvider()
    {
        m_provider = std::make_unique<Provider>(m_database->constructor(), m_database->details());
    }

    void setCacheSize(int size) { QSettings().setValue("ThumbnailCache/thumbnailCacheSize"_s, size); }

    std::unique_ptr<SettingsSandbox> m_settings;
    TestFolder m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationProvider> m_provider;
};

QTEST_GUILESS_MAIN(TestThumbnails)
#include "tst_thumbnails.moc"
