#include "core/records/file.h"
#include "db/sql/sqltext.h"
#include "fileops/files/datachecksum.h"
#include "fileops/pictures/imageloading.h"
#include "fileops/provider/thumbnailcache.h"
#include "tests/support/localmanager.h"
#include "tests/support/serverdatabase.h"

#include <QTransform>

namespace {
QImage coloured(int width, int height, QImage::Format format = QImage::Format_RGB32)
{
    QImage picture(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            picture.setPixel(x, y, qRgba(x * 255 / width, y * 255 / height, 90, 255));
    }
    return picture.convertToFormat(format);
}

QByteArray bytesOf(const QImage &picture, const char *format = "PNG")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, format, 100);
    return bytes;
}

QImage turned(const QImage &picture)
{
    return picture.transformed(QTransform().rotate(90));
}

/** A small JPEG with one more segment behind its beginning. */
QByteArray jpegWith(char marker, const QByteArray &contents)
{
    const char head[] = {'\xff', marker, 0, char(contents.size() + 2)};
    return bytesOf(coloured(60, 40), "JPG").insert(2, QByteArray(head, 4) + contents);
}

/** All that a save may change. */
QStringList contents()
{
    return Sql::rows("SELECT * FROM files ORDER BY 1") + Sql::rows("SELECT * FROM storage_info ORDER BY 1") +
           Sql::rows("SELECT storage_id, length(data) FROM storage ORDER BY 1") +
           Sql::rows("SELECT thumbnail_id, length(thumbnail) FROM thumbnails ORDER BY 1");
}

/** What is stored of file 1, block after block. */
QByteArray stored()
{
    QSqlQuery query("WITH RECURSIVE chain(id, n) AS (SELECT storage_id, 1 FROM files WHERE file_id=1 "
                    "UNION SELECT continue_id, n+1 FROM storage_info, chain WHERE storage_id=id) "
                    "SELECT data FROM storage, chain WHERE storage_id=id ORDER BY n"_s);
    QByteArray bytes;
    while (query.next())
        bytes += query.value(0).toByteArray();
    return bytes;
}

/** Whether the thumbnail, under its old id, is that of a picture that is higher than wide. */
bool isThumbnailHigh()
{
    QSqlQuery query("SELECT thumbnail FROM thumbnails WHERE thumbnail_id=7"_s);
    return query.next() && QImage::fromData(query.value(0).toByteArray()).pixelColor(1, 64).alpha() == 0;
}
} // namespace

/** Pictures read whole and turned ones written back: nothing is lost, nothing else is touched. */
class TestImageStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init()
    {
        m_folder = std::make_unique<TestFolder>();
        m_manager = std::make_unique<LocalManager>(makeTestDatabase());
    }
    void cleanup() { m_manager.reset(); }

    void neighboursKeepTheirBlocks()
    {
        // Where stamps have no names, one's own saves must not pass for those of others.
        if (auto *server = dynamic_cast<ServerDatabase *>(&base())) {
            QVERIFY(server->dropJournal(false));
            QVERIFY(
                server->owner().run("CREATE TRIGGER stamp AFTER UPDATE ON files EXECUTE FUNCTION stamp()"_s));
            manager()->reloadAllData();
        }
        const QImage picture = coloured(1800, 1900);
        const QByteArray bytes = bytesOf(picture, "BMP");
        base().addBlock(1, 3, bytes.left(10000000));
        base().addBlock(2, 4, "another's first");
        base().addBlock(3, 0, bytes.mid(10000000));
        base().addBlock(4, 0, "another's last");
        addRecord("p.bmp"_s, 1, bytes.size(), 1);
        QCOMPARE(load().image, picture);
        QCOMPARE(save(turned(turned(turned(picture)))), StoredImage::Saved);
        QCOMPARE(save(turned(turned(picture))), StoredImage::Saved);
        QCOMPARE(save(turned(picture)), StoredImage::Saved);
        QCOMPARE(QImage::fromData(stored()), turned(picture));
        QCOMPARE(Sql::rows("SELECT * FROM storage_info WHERE storage_id IN (2,4) ORDER BY 1"),
                 (QStringList{"2|4"_s, "4|0"_s}));
        QCOMPARE(Sql::value("SELECT count(*), max(length(data)) FROM storage"), "4|10000000"_s);
        QCOMPARE(manager()->file(1)->size(), qint64(stored().size()));
        QCOMPARE(manager()->file(1)->checksum(), qint64(DataChecksum::ofBytes(stored())));
        QVERIFY(!isThumbnailHigh());
    }

    void formatsKeepWhatTheyHold_data()
    {
        addColumns<QString, QImage>("name", "picture");
        QImage clear = coloured(40, 20, QImage::Format_ARGB32);
        clear.setPixel(3, 4, qRgba(200, 100, 50, 3));
        clear.setPixel(5, 6, qRgba(200, 100, 50, 0));
        addRow("transparency", "p.png"_s, clear);
        addRow("16 bits a colour", "p.png"_s, coloured(40, 20, QImage::Format_RGBA64));
        addRow("grey", "p.PNG"_s, coloured(40, 20, QImage::Format_Grayscale8));
        addRow("palette", "p.png"_s, coloured(40, 20, QImage::Format_Indexed8));
        addRow("tiff", "p.tif"_s, coloured(40, 20));
        addRow("webp", "p.webp"_s, clear);
    }

    void formatsKeepWhatTheyHold()
    {
        QFETCH(QString, name);
        QFETCH(QImage, picture);
        picture.setDotsPerMeterX(5000);
        picture.setDotsPerMeterY(3000);
        picture.setText("Author"_s, "%1 'x'"_s);
        addPicture(name, bytesOf(picture, qPrintable(QFileInfo(name).suffix())));
        const QImage before = QImage::fromData(stored());
        // As it comes from the screen.
        const QImage shown = load().image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(save(turned(shown)), StoredImage::Saved);
        const QImage after = QImage::fromData(stored());
        QCOMPARE(after, turned(before));
        QCOMPARE(after.format(), before.format());
        QCOMPARE(QSize(after.dotsPerMeterX(), after.dotsPerMeterY()),
                 QSize(before.dotsPerMeterY(), before.dotsPerMeterX()));
        QCOMPARE(after.text("Author"_s), before.text("Author"_s));
    }

    void uprightPicturesAreNotTurnedTwice()
    {
        // The camera's notes: this lies on its right side.
        const QByteArray lying("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 32);
        addPicture("p.jpg"_s, jpegWith('\xe1', lying + "the camera"));
        QImage picture = load().image;
        QCOMPARE(picture.size(), QSize(40, 60));
        // Turned on after a save, without reading it in between.
        for (int i = 0; i < 2; ++i) {
            picture = turned(picture);
            QCOMPARE(save(picture), StoredImage::Saved);
            QVERIFY(stored().contains("the camera"));
            QVERIFY(stored().contains(QByteArray("\x01\x12\0\x03\0\0\0\x01\0\x01\0", 11)));
        }
        const QImage after = load().image;
        QCOMPARE(after.size(), QSize(40, 60));
        const QColor kept = after.pixelColor(5, 5);
        const QColor wanted = picture.pixelColor(5, 5);
        QVERIFY(qAbs(kept.red() - wanted.red()) < 12 && qAbs(kept.green() - wanted.green()) < 12);
        const QStringList before = contents();
        QCOMPARE(save(after), StoredImage::Saved);
        QCOMPARE(contents(), before); // nothing was turned, so no quality is lost
    }

    void otherFormatsStayAsTheyAre_data()
    {
        addColumns<QString, QByteArray>("name", "bytes");
        QImage clear = coloured(4, 2, QImage::Format_ARGB32);
        clear.setPixel(0, 0, 0);
        const QByteArray png = bytesOf(coloured(4, 2));
        const QByteArray frame(",\0\0\0\0\2\0\1\0\0\2\2D\n\0", 15);
        addRow("gif", "p.gif"_s, png);
        addRow("tga", "p.tga"_s, png);
        addRow("svg", "p.svg"_s,
               QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='4' height='2'/>"));
        addRow("no ending", "p"_s, png);
        addRow("transparent, named as if it could not be", "p.jpg"_s, bytesOf(clear));
        addRow("animated", "p.png"_s, QByteArray(png).insert(33, QByteArray("\0\0\0\0acTL\0\0\0\0", 12)));
        addRow("frames", "p.png"_s,
               QByteArray("GIF89a\2\0\1\0\x80\0\0\0\0\0\xff\xff\xff", 19) + frame + frame + ";");
        addRow("stereo", "p.jpg"_s, jpegWith('\xe2', QByteArray("MPF\0", 4)));
    }

    void otherFormatsStayAsTheyAre()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        addPicture(name, bytes);
        const QImage loaded = load().image;
        QVERIFY(!loaded.isNull());
        const QStringList before = contents();
        QCOMPARE(save(turned(loaded)), StoredImage::NotSaved);
        QCOMPARE(contents(), before);
    }

    void failuresLeaveEverything_data()
    {
        addColumns<QString, QString>("what", "condition");
        addRow("block", "INSERT ON storage"_s, "1=1"_s);
        addRow("link", "INSERT ON storage_info"_s, "1=1"_s);
        addRow("old block", "DELETE ON storage"_s, "1=1"_s);
        addRow("thumbnail", "INSERT ON thumbnails"_s, "1=1"_s);
        addRow("record", "UPDATE ON files"_s, "NEW.data_checksum<>OLD.data_checksum"_s);
    }

    void failuresLeaveEverything()
    {
        QFETCH(QString, what);
        QFETCH(QString, condition);
        addPicture("p.png"_s, bytesOf(coloured(4, 2)));
        const QImage loaded = load().image;
        const QStringList before = contents();
        QCOMPARE(saveRefused(turned(loaded), what, condition), StoredImage::Refused);
        QCOMPARE(contents(), before);
        QCOMPARE(save(turned(loaded)), StoredImage::Saved);
    }

    void whatOthersDoIsKept()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        addPicture("p.png"_s, bytesOf(coloured(4, 2)));
        QCOMPARE(save(coloured(2, 4)), StoredImage::NotSaved); // not loaded
        const QImage loaded = load().image;
        m_manager->run("UPDATE files SET data_checksum=data_checksum+1");
        QCOMPARE(save(turned(loaded)), StoredImage::NotSaved); // no longer what was loaded
        load();
        QSignalSpy warnings(m_manager->get(), &DatabaseManger::showTempWarning);
        std::unique_ptr<OtherConnection> other;
        if (!isOnServer)
            other = std::make_unique<OtherConnection>(base().details().databaseName());
        QVERIFY(isOnServer ? static_cast<ServerDatabase &>(base()).owner().run(
                                 "UPDATE files SET file_description='new'"_s)
                           : other->run("BEGIN IMMEDIATE"_s));
        const QStringList before = contents();
        QCOMPARE(save(turned(loaded)), StoredImage::Refused);
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(contents(), before);
    }

    void filesOnTheDiskAreReplacedWhole()
    {
        const QImage picture = coloured(40, 20);
        const QString path = m_folder->write("a 'b' %1.png"_s, bytesOf(picture));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions permissions = QFile::permissions(path);
        const QDateTime time = QFileInfo(path).lastModified();
        const QString link = m_folder->filePath("li'nk.png"_s);
        QVERIFY(QFile::link(path, link));
        addExternal(link);
        m_manager->run("INSERT INTO files SELECT 2, 'link.png', '', 1, 1, 1, 'C2', 1, 1, 0, 0, 0");
        manager()->loadAllFiles();
        const QImage loaded = load().image;
        QSignalSpy shown(manager().get(), &DatabaseManger::thumbnailUpdated);
        manager()->thumbnailCache()->thumbnail(1);
        QTRY_COMPARE(shown.size(), 1);
        QTRY_VERIFY(!manager()->isBusy());

        QCOMPARE(saveRefused(turned(loaded), "INSERT ON thumbnails"_s), StoredImage::Refused);
        QCOMPARE(QImage(path), picture);
        QCOMPARE(QFileInfo(path).lastModified(), time);

        QCOMPARE(save(turned(loaded)), StoredImage::Saved);
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(QFile::permissions(path), permissions);
        QCOMPARE(QImage(path), turned(picture));
        QCOMPARE(QDir(m_folder->folder()).entryList(QDir::Files | QDir::Hidden).size(), 2);
        for (const qint64 id : {1, 2}) { // both records name the file
            const File &file = *manager()->file(id);
            QCOMPARE(file.name(), "li'nk.png"_s);
            QCOMPARE(file.size(), QFileInfo(path).size());
            QCOMPARE(file.modificationSeconds(), QFileInfo(path).lastModified().toSecsSinceEpoch());
            QCOMPARE(file.checksum(), qint64(DataChecksum::ofBytes(TestFolder::read(path))));
        }
        QVERIFY(isThumbnailHigh());
        QTRY_COMPARE(shown.size(), 2);

        m_folder->write("a 'b' %1.png"_s, "somebody else's");
        QCOMPARE(save(loaded), StoredImage::NotSaved);
        QCOMPARE(TestFolder::read(path), QByteArray("somebody else's"));
    }

    void tellsWhyThereIsNoPicture()
    {
        QCOMPARE(load().state, StoredImage::UnknownFile);
        addPicture("p.png"_s, "text");
        QCOMPARE(load().state, StoredImage::InternalUnreadable);
        m_manager->run("UPDATE storage_info SET continue_id=storage_id");
        QCOMPARE(load().state, StoredImage::InternalUnreadable);
        m_manager->run("DELETE FROM files");
        addExternal(m_folder->filePath("p.png"_s));
        QCOMPARE(load().state, StoredImage::FileGone);
        QImage black(20000, 20000, QImage::Format_Mono);
        black.fill(0);
        const QByteArray wide("<svg xmlns='http://www.w3.org/2000/svg' width='30000' height='30000'/>");
        for (const QByteArray &bytes : {QByteArray("text"), bytesOf(black), wide}) {
            m_folder->write("p.png"_s, bytes);
            QCOMPARE(load().state, StoredImage::ExternalUnreadable);
        }
    }

private:
    LocalManager &manager() { return *m_manager; }
    TestDatabase &base() { return m_manager->database(); }
    StoredImage load() { return manager()->loadImage(1)->result(); }
    StoredImage::Saving save(const QImage &picture) { return manager()->saveImage(1, picture); }
    /** The same while the database does not take one thing. */
    StoredImage::Saving saveRefused(const QImage &picture, const QString &what,
                                    const QString &condition = "1=1"_s)
    {
        const bool isRefusing = base().refuse(what, condition);
        const StoredImage::Saving saving = save(picture);
        const bool isPermitted = base().permit(what.section(QLatin1Char(' '), 2));
        return isRefusing && isPermitted ? saving : StoredImage::Saved;
    }

    void addRecord(const QString &name, int internal, qint64 size, qint64 storageId)
    {
        base().addFile(1, internal, size, storageId, 7);
        Sql::run("DELETE FROM thumbnails");
        Sql::run("INSERT INTO thumbnails VALUES (7, '')");
        m_manager->run("UPDATE files SET file_name=%1"_s.arg(SqlText::quoted(name)));
        manager()->loadAllFiles();
    }
    void addPicture(const QString &name, const QByteArray &bytes)
    {
        base().addBlock(1, 0, bytes);
        addRecord(name, 1, bytes.size(), 1);
    }
    void addExternal(const QString &path)
    {
        Sql::run("INSERT INTO file_paths VALUES (1, %1, '')"_s.arg(SqlText::quoted(path)));
        addRecord(QFileInfo(path).fileName(), 0, 1, 1);
    }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<LocalManager> m_manager;
};

QTEST_GUILESS_MAIN(TestImageStore)
#include "tst_imagestore.moc"
