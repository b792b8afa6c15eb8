#include "fileops/fileoperationworker.h"
#include "fileops/postgresfileoperationprovider.h"
#include "fileops/sqlitefileoperationprovider.h"
#include "fileops/thumbnailcache.h"
#include "fileops/thumbnailmaker.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <sys/stat.h>

namespace {
QImage coloured(int width, int height, const QColor &colour)
{
    QImage image(width, height, QImage::Format_RGB32);
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

/** A square black picture, a thousand times larger when it is unpacked. */
QByteArray blackPng(int edge)
{
    QImage image(edge, edge, QImage::Format_Mono);
    image.fill(0);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
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
        m_folder = std::make_unique<TestFolder>();
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
        const QString png = "picture.png"_s;
        const QString jpg = "picture.jpg"_s;
        addRow("wide png", QSize(3000, 1000), png, QRect(0, 42, 128, 43));
        addRow("high", QSize(1000, 3000), png, QRect(42, 0, 43, 128));
        addRow("square", QSize(640, 640), jpg, QRect(0, 0, 128, 128));
        addRow("small ones grow", QSize(20, 10), png, QRect(0, 32, 128, 64));
        addRow("a line stays visible", QSize(4000, 3), png, QRect(0, 63, 128, 1));
        addRow("half a pixel rounds up", QSize(256, 85), png, QRect(0, 42, 128, 43));
    }

    void fitsThePictureIntoTheCanvas()
    {
        QFETCH(QSize, size);
        QFETCH(QString, name);
        const QString path = m_folder->filePath(name);
        QVERIFY(coloured(size.width(), size.height(), Qt::red).save(path));
        const QImage thumbnail = ThumbnailMaker::thumbnailOf(path);
        QCOMPARE(thumbnail.size(), QSize(128, 128));
        QTEST(opaquePart(thumbnail), "part");
    }

    void keepsColoursAndTransparency()
    {
        QImage picture(400, 400, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        for (int y = 200; y < 400; ++y) {
            for (int x = 0; x < 400; ++x)
                picture.setPixel(x, y, qRgba(10, 200, 30, 255));
        }
        QVERIFY(picture.save(filePath("half.png")));
        const QImage thumbnail = ThumbnailMaker::thumbnailOf(filePath("half.png"));
        QCOMPARE(qAlpha(thumbnail.pixel(64, 20)), 0);
        QCOMPARE(thumbnail.pixel(64, 100), qRgba(10, 200, 30, 255));
    }

    void readsByContentNotByName()
    {
        QVERIFY(coloured(300, 300, Qt::blue).save(filePath("really.png")));
        QVERIFY(QFile::rename(filePath("really.png"), filePath("really.jpg")));
        QCOMPARE(ThumbnailMaker::thumbnailOf(filePath("really.jpg")).pixel(5, 5), qRgb(0, 0, 255));
    }

    void readsLargePictures()
    {
        m_folder->write("grey.png"_s, blackPng(3000));
        QCOMPARE(ThumbnailMaker::thumbnailOf(filePath("grey.png")).pixel(64, 64), qRgb(0, 0, 0));
        QVERIFY(coloured(9000, 8000, Qt::red).save(filePath("red.png")));
        QCOMPARE(ThumbnailMaker::thumbnailOf(filePath("red.png")).pixel(64, 64), qRgb(255, 0, 0));
    }

    void refusesWhatIsNoPicture_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        addRow("text", QByteArray("this is no picture"));
        addRow("nothing", QByteArray());
        addRow("cut off", QByteArray("\x89PNG\r\n\x1a\n", 8));
        addRow("a hundred million pixels out of few bytes", blackPng(10000));
        addRow("pipe", QByteArray("pipe"));
    }

    void refusesWhatIsNoPicture()
    {
        QFETCH(QByteArray, bytes);
        const QString path = filePath("bad.png");
        if (bytes == "pipe")
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else
            m_folder->write("bad.png"_s, bytes);
        QVERIFY(m_database->openWorkerConnection());
        FileOperationWorker worker(Constants::workerConnection, m_database->details(),
                                   m_database->constructor());
        QVERIFY(!ThumbnailMaker(worker).makeThumbnail(path, 1, true));
        QCOMPARE(m_database->count("thumbnails"_s), 0);
    }

    void storesAndReplacesThumbnails_data() { addBackEnds(); }

    void storesAndReplacesThumbnails()
    {
        QVERIFY(coloured(300, 200, Qt::red).save(filePath("a.png")));
        QVERIFY(coloured(300, 200, Qt::blue).save(filePath("b.png")));
        QVERIFY(m_database->openWorkerConnection());
        FileOperationWorker worker(Constants::workerConnection, m_database->details(),
                                   m_database->constructor());
        ThumbnailMaker maker(worker);
        QVERIFY(maker.makeThumbnail(filePath("a.png"), 7, true));
        QVERIFY(maker.makeThumbnail(filePath("a.png"), 8, true));
        QVERIFY(maker.makeThumbnail(filePath("b.png"), 7, false));
        QVERIFY(!maker.makeThumbnail(filePath("b.png"), 8, true));
        const auto stored = [](int id) {
            QSqlQuery query("SELECT thumbnail FROM thumbnails WHERE thumbnail_id=%1"_s.arg(id));
            return query.next() ? query.value(0).toByteArray() : QByteArray();
        };
        QCOMPARE(QImage::fromData(stored(7), "PNG").pixel(64, 64), qRgb(0, 0, 255));
        QCOMPARE(QImage::fromData(stored(8), "PNG").pixel(64, 64), qRgb(255, 0, 0));
        QVERIFY(stored(7).size() < 4096);
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
        QVERIFY(cache.contains(2));
        cache.remove(1);
        QVERIFY(!cache.contains(1));
        cache.clearCache();
        QVERIFY(!cache.contains(2));
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
    void addThumbnail(qint64 fileId, const QColor &colour)
    {
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(buffer.open(QIODevice::WriteOnly) && coloured(128, 128, colour).save(&buffer, "PNG"));
        QSqlQuery query;
        query.prepare("INSERT INTO thumbnails VALUES (?, ?)"_s);
        query.addBindValue(fileId + 1000);
        query.addBindValue(png);
        QVERIFY(query.exec() && m_database->addFile(fileId, 2, 0, 0, fileId + 1000));
    }

    template <class Provider>
    void makeProvider()
    {
        m_provider = std::make_unique<Provider>(m_database->constructor(), m_database->details());
    }

    QString filePath(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    void setCacheSize(int size) { QSettings().setValue("ThumbnailCache/thumbnailCacheSize"_s, size); }

    std::unique_ptr<SettingsSandbox> m_settings;
    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationProvider> m_provider;
};

QTEST_GUILESS_MAIN(TestThumbnails)
#include "tst_thumbnails.moc"
