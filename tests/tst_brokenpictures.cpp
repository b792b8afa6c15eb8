#include "fileops/pictures/imageloading.h"
#include "fileops/pictures/picturelimits.h"
#include "fileops/pictures/picturemessage.h"
#include "fileops/pictures/picturepool.h"
#include "fileops/pictures/picturereader.h"
#include "fileops/pictures/thumbnailcanvas.h"
#include "tests/support/addingfixture.h"

#include <QFontDatabase>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <csignal>
#include <linux/landlock.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {
/** Without it a reader opens nothing at all, and draws with the fonts that it has loaded before. */
bool canAllowFolders()
{
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

constexpr qint64 megabyte = 1024 * 1024;
constexpr int mostSeconds = 2;
constexpr PictureLimits limits = {512 * megabyte, mostSeconds};

QImage sample()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(3, 5, 20, 9, QColor(200, 40, 10));
    return image;
}

quint32 crcOf(const QByteArray &bytes)
{
    quint32 crc = ~0U;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? crc >> 1 ^ 0xedb88320 : crc >> 1;
    }
    return ~crc;
}

/** A chunk of a PNG or MNG. */
QByteArray chunk(const QByteArray &contents)
{
    QByteArray numbers(8, 0);
    qToBigEndian(quint32(contents.size() - 4), numbers.data());
    qToBigEndian(crcOf(contents), numbers.data() + 4);
    return numbers.left(4) + contents + numbers.mid(4);
}

/** Whole pictures of the formats that cannot be written here. */
QByteArray handMade(const QByteArray &format, const QByteArray &png)
{
    if (format == "gif")
        return QByteArray::fromHex("47494638396102000100800000000000ffffff2c0000000002000100000202440a003b");
    if (format == "svg")
        return "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'><style>.a{fill:red}</style>"
               "<defs><linearGradient id='g'><stop offset='1' stop-color='blue'/></linearGradient></defs>"
               "<g transform='rotate(9)'><path class='a' stroke-dasharray='3 4' stroke='url(#g)' "
               "d='M1 2h30v20q9 9 1 2z'/><text x='1' y='9'>text</text></g></svg>";
    if (format == "svgz")
        return QByteArray::fromHex(
            "1f8b08000000000002ffb3292e4b57a8c8cdc92bb655cf282929b0d2d72f2f2fd72b37d6cb2f4ad737323030d0"
            "07aa505728cf4c29c9b05537315057c848cd4ccf28b155373650b7b3294a4d2e81495a22e42cd5f5ed6c403aed"
            "00bc130e3d61000000");
    if (format == "tga")
        return QByteArray::fromHex("000002000000000000000000030002001820" + QByteArray("0000ff").repeated(6));
    if (format == "mng")
        return QByteArray("\x8aMNG\r\n\x1a\n", 8) +
               chunk("MHDR" + QByteArray::fromHex("000000280000001e00000001000000010000000100000001000000"
                                                  "01")) +
               png.mid(8) + chunk("MEND");
    return QByteArray();
}

QByteArray sampleOf(const QByteArray &format)
{
    const auto written = [](const QByteArray &name) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImageWriter(&buffer, name).write(sample());
        return bytes;
    };
    const QByteArray bytes =
        QImageWriter::supportedImageFormats().contains(format) ? written(format) : QByteArray();
    return bytes.isEmpty() ? handMade(format, written("png")) : bytes;
}

/** The processes that this one has started. */
QList<int> readers()
{
    QList<int> ids;
    for (const QString &name : QDir("/proc"_s).entryList(QDir::Dirs)) {
        const QByteArray status = TestFolder::read("/proc/"_s + name + "/status"_s);
        if (status.contains("\nPPid:\t" + QByteArray::number(QCoreApplication::applicationPid()) + '\n'))
            ids.append(name.toInt());
    }
    return ids;
}

rlim_t limitOf(int process, __rlimit_resource resource, rlim_t rlimit::*which = &rlimit::rlim_cur)
{
    rlimit values = {};
    return ::prlimit(process, resource, nullptr, &values) == 0 ? values.*which : RLIM_INFINITY;
}

/** A line of a process's status, without its name. */
QByteArray statusOf(int process, const QByteArray &name)
{
    const QByteArray status = TestFolder::read("/proc/%1/status"_s.arg(process));
    const int start = status.indexOf('\n' + name + ":\t");
    return start < 0
               ? QByteArray()
               : status.mid(start, status.indexOf('\n', start + 1) - start).mid(name.size() + 3).trimmed();
}
} // namespace

/** Broken and crafted pictures, added and looked at: each ends at most the process that reads it. */
class TestBrokenPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const PictureUse use : {PictureUse::Thumbnail, PictureUse::Whole, PictureUse::Facts})
            PicturePool::instance().setLimits(use, limits);
    }
    void init()
    {
        m_fixture = std::make_unique<AddingFixture>();
        QSettings().setValue("MainWindow/linkToFiles"_s, true);
        QSettings().setValue("PreferencesDialog/duplicateManagementEnabled"_s, false);
    }
    void cleanup() { m_fixture.reset(); }

    /** Each format, cut at each of its first lengths and with each bit of its head flipped. */
    void cutAndFlipped_data()
    {
        addColumns<QByteArray>("format");
        for (const QByteArray &format : QImageReader::supportedImageFormats())
            QTest::newRow(format.constData()) << format;
    }

    void cutAndFlipped()
    {
        constexpr int variants = 300;
        QFETCH(QByteArray, format);
        const QByteArray whole = sampleOf(format);
        QVERIFY(!whole.isEmpty());
        QStringList paths;
        const auto write = [&](const QString &name, const QByteArray &bytes) {
            paths.append(m_fixture->write(name + QLatin1Char('.') + QString::fromLatin1(format), bytes));
        };
        for (int i = 0; i < variants; ++i) {
            if (i < whole.size())
                write("cut %1"_s.arg(i), whole.left(i));
            QByteArray flipped = whole;
            if (i / 8 < whole.size())
                flipped[i / 8] = char(flipped.at(i / 8) ^ 1 << i % 8);
            write("flipped %1"_s.arg(i), flipped);
            // Without its name nothing tells a TGA from an icon.
            if (i % 100 == 0 && format != "tga")
                write("whole %1"_s.arg(i), whole);
        }
        addAll(paths);
        QVERIFY(format == "tga" || hasThumbnail("whole %"_s));
        lookAtAll(paths);
    }

    void crafted()
    {
        QStringList paths;
        QDir folder(QStringLiteral(VORNA_TEST_PICTURES));
        const QStringList names = folder.entryList({"*.svg"_s, "*.mng"_s, "*.webp"_s}, QDir::Files);
        QCOMPARE(names.size(), 7);
        for (const QString &name : names) {
            paths.append(m_fixture->write(name, TestFolder::read(folder.filePath(name))));
            paths.append(m_fixture->write(name + ".whole.png"_s, sampleOf("png")));
        }
        addAll(paths);
        QVERIFY(hasThumbnail("%.whole.png"_s));
        lookAtAll(paths);
        // Known by now: no time is spent on them again.
        QElapsedTimer clock;
        clock.start();
        lookAtAll(paths);
        QVERIFY(clock.elapsed() < 1000 * mostSeconds);
    }

    void whatIsChangedIsTriedAgain()
    {
        const QString path =
            m_fixture->write("a.svg"_s, TestFolder::read(QStringLiteral(VORNA_TEST_PICTURES "/d60.svg")));
        QCOMPARE(read(path).state, PictureAnswer::Failed);
        m_fixture->write("a.svg"_s, sampleOf("png"));
        QCOMPARE(read(path).state, PictureAnswer::Read);
    }

    void aLostProcessIsReplaced()
    {
        const QString path = m_fixture->write("a.png"_s, sampleOf("png"));
        QCOMPARE(read(path).state, PictureAnswer::Read);
        for (const int id : readers())
            ::kill(id, SIGKILL);
        QCOMPARE(read(path).state, PictureAnswer::Read);
    }

    /** Of the files on the disk a drawing gets its fonts, and no other. */
    void drawingsReadFontsOnly()
    {
        const QByteArray head = "<svg xmlns='http://www.w3.org/2000/svg' width='90' height='30' "
                                "xmlns:xlink='http://www.w3.org/1999/xlink'>";
        const QStringList families =
            canAllowFolders() ? QFontDatabase().families().mid(0, 12) : QStringList();
        for (const QString &family : families) {
            const QString path = m_fixture->write("text.svg"_s, head + "<text y='20' font-family='" +
                                                                    family.toUtf8() + "'>Rag</text></svg>");
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(read(path).image == PictureReader(file).whole(), qPrintable(family));
        }
        const QByteArray other = m_fixture->write("a.png"_s, sampleOf("png")).toUtf8();
        const QImage image = read(m_fixture->write("image.svg"_s, head +
                                                                      "<image width='90' height='30' "
                                                                      "xlink:href='" +
                                                                      other + "'/></svg>"))
                                 .image;
        QCOMPARE(image.pixel(15, 10), qRgba(0, 0, 0, 0));
    }

    void largeFilesMayTakeMore()
    {
        constexpr qint64 size = 100 * megabyte;
        const QString path = m_fixture->write("a.png"_s, sampleOf("png"));
        PicturePool::instance().setLimits(PictureUse::Whole, {limits.bytes, 2, 7});
        const auto mostSeconds = [&] {
            if (read(path).state != PictureAnswer::Read)
                return rlim_t(0);
            rlim_t most = 0;
            for (const int id : readers())
                most = qMax(most, limitOf(id, RLIMIT_CPU));
            return most;
        };
        for (const int id : readers())
            ::kill(id, SIGKILL);
        const rlim_t ofSmall = mostSeconds();
        QVERIFY(QFile::resize(path, size));
        const rlim_t ofLarge = mostSeconds();
        PicturePool::instance().setLimits(PictureUse::Whole, limits);
        QVERIFY(ofSmall >= 2 && ofLarge >= ofSmall + 5);
    }

    void canceledReadingEnds()
    {
        PicturePool::instance().setLimits(PictureUse::Whole, {limits.bytes, 60});
        const auto bytes = TestFolder::read(QStringLiteral(VORNA_TEST_PICTURES "/m6.mng"));
        ImageLoading loading({PictureUse::Whole, {}, bytes}, {}, StoredImage::InternalUnreadable);
        QSignalSpy finished(&loading, &ImageLoading::finished);
        QVERIFY(!finished.wait(300));
        loading.cancel();
        QVERIFY(finished.wait(1000));
        PicturePool::instance().setLimits(PictureUse::Whole, limits);
    }

    void processesStandBehindWalls()
    {
        read(m_fixture->write("a.png"_s, sampleOf("png")));
        const QList<int> ids = readers();
        QVERIFY(!ids.isEmpty() && ids.size() <= PicturePool::instance().width());
        for (const int id : ids) {
            QCOMPARE(statusOf(id, "NoNewPrivs"), QByteArray("1"));
            QCOMPARE(statusOf(id, "Seccomp"), QByteArray("2"));
#ifndef __SANITIZE_ADDRESS__
            constexpr rlim_t own = 400 * megabyte;
            QVERIFY(limitOf(id, RLIMIT_AS) < limits.bytes + own);
            QVERIFY(limitOf(id, RLIMIT_AS) > limits.bytes + 10 * megabyte); // beside what it had before
#endif
            QVERIFY(limitOf(id, RLIMIT_AS, &rlimit::rlim_max) < RLIM_INFINITY);
            QVERIFY(limitOf(id, RLIMIT_CPU) < RLIM_INFINITY);
            QVERIFY(limitOf(id, RLIMIT_NOFILE) < 30);
            QCOMPARE(limitOf(id, RLIMIT_CORE), rlim_t(0));
        }
    }

    // What a reader says that somebody has taken over.
    void onlyPossibleAnswersAreTaken_data()
    {
        using Answer = PictureMessage::Answer;
        addColumns<int, int, bool>("change", "value", "isTaken");
        const auto rows = [](const char *name, qint32 Answer::*field, std::initializer_list<int> taken,
                             std::initializer_list<int> refused) {
            const int change = fields().indexOf(field);
            for (const int value : taken)
                QTest::addRow("%s %d", name, value) << change << value << true;
            for (const int value : refused)
                QTest::addRow("%s %d", name, value) << change << value << false;
        };
        rows("width", &Answer::width, {1, 16000}, {0, -1, 16001});
        rows("height", &Answer::height, {1, 10000}, {0, -1, 10001});
        rows("format", &Answer::format, {QImage::NImageFormats - 1},
             {-1, QImage::Format_Invalid, QImage::NImageFormats});
        rows("colours", &Answer::colourCount, {0, PictureLimit::colours}, {-1, PictureLimit::colours + 1});
        rows("notes", &Answer::notesLength, {0, PictureLimit::notesBytes},
             {-1, PictureLimit::notesBytes + 1});
    }

    void onlyPossibleAnswersAreTaken()
    {
        PictureMessage::Answer answer = {};
        answer.width = 16000;
        answer.height = 10000;
        answer.format = QImage::Format_ARGB32;
        answer.pixelBytes = PictureLimit::wholeBytes;
        QFETCH(int, change);
        QFETCH(int, value);
        answer.*fields().at(change) = value;
        using PictureMessage::isPlausible;
        QTEST(isPlausible(answer, PictureUse::Whole), "isTaken");
        // Nothing but a canvas is a thumbnail.
        QVERIFY(!isPlausible(answer, PictureUse::Thumbnail));
        answer = {};
        answer.width = answer.height = ThumbnailCanvas::edge;
        answer.format = QImage::Format_ARGB32;
        for (const qint64 bytes : {qint64(0), qint64(-1), PictureLimit::wholeBytes + 1}) {
            answer.pixelBytes = bytes;
            QVERIFY(!isPlausible(answer, PictureUse::Thumbnail));
        }
        answer.pixelBytes = 1;
        QVERIFY(isPlausible(answer, PictureUse::Thumbnail));
    }

private:
    static QVector<qint32 PictureMessage::Answer::*> fields()
    {
        using Answer = PictureMessage::Answer;
        return {&Answer::width, &Answer::height, &Answer::format, &Answer::colourCount, &Answer::notesLength};
    }
    void addAll(const QStringList &paths)
    {
        m_fixture->add(paths);
        QVERIFY(m_fixture->errors.isEmpty());
        QCOMPARE(Sql::count("files"_s), paths.size());
    }
    /** Whether all files of such a name have one. */
    static bool hasThumbnail(const QString &names)
    {
        return Sql::rows("SELECT count(*), count(*)-count(thumbnail) FROM files LEFT JOIN thumbnails USING "
                         "(thumbnail_id) WHERE file_name LIKE '%1'"_s.arg(names))
                   .first()
                   .endsWith("|0"_s) &&
               Sql::count("files WHERE file_name LIKE '%1'"_s.arg(names)) > 2;
    }
    static PictureAnswer read(const QString &path)
    {
        return PicturePool::instance().read({PictureUse::Whole, path, {}});
    }
    /** As the previewer does, some at a time, as they may be large. */
    static void lookAtAll(const QStringList &paths)
    {
        constexpr int atOnce = 8;
        QVector<PictureTaskPointer> tasks;
        for (int i = 0; i < paths.size() + atOnce; ++i) {
            if (i < paths.size()) {
                tasks.append(PictureTaskPointer::create(PictureRequest{PictureUse::Whole, paths.at(i), {}}));
                PicturePool::instance().start(tasks.last());
            }
            if (i < atOnce)
                continue;
            const QString &path = paths.at(i - atOnce);
            const PictureAnswer::State state = tasks.takeFirst()->waitedFor().state;
            QVERIFY(state != PictureAnswer::Unavailable);
            QVERIFY2(state == PictureAnswer::Read || !path.contains("whole"_s), qPrintable(path));
        }
    }

    std::unique_ptr<AddingFixture> m_fixture;
};

QTEST_MAIN(TestBrokenPictures)
#include "tst_brokenpictures.moc"
