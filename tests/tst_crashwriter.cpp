#include "app/crashwriter.h"
#include "tests/support/text.h"

#include <csignal>
#include <cstdlib>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const std::uintptr_t badAddress = 0x18;

[[gnu::no_sanitize("undefined")]] void readBadAddress()
{
    // Through the environment, so that no compiler sees the fault coming.
    const std::uintptr_t offset = getenv("NO_SUCH_NAME") ? 1 : 0;
    *reinterpret_cast<volatile int *>(badAddress + offset) = 1;
}

int overflowStack(int depth)
{
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : overflowStack(depth + 1) + room[0];
}

void fault(int kind)
{
    switch (kind) {
    case 1:
        readBadAddress();
        break;
    case 2:
        abort();
    case 3:
        overflowStack(0);
        break;
    case 4:
        std::thread(readBadAddress).join();
        break;
    default:
        raise(kind - 100);
        break;
    }
}

/** Faults in a child whose working directory is the folder. Its status as wait() tells it. */
int runChild(const QString &folder, int kind, bool isFolderRemoved = false)
{
    const pid_t child = fork();
    if (child == 0) {
        // No core beside the dump, and no reports of the test's own or of a sanitizer.
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none);
        for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTERM})
            signal(number, SIG_DFL);
        umask(0);
        const QByteArray name = QFile::encodeName(folder);
        if (chdir(name.constData()) == 0 && (!isFolderRemoved || rmdir(name.constData()) == 0)) {
            installCrashWriter();
            fault(kind);
        }
        _exit(42);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

} // namespace

/** A process that faults leaves one dump in its working directory and ends by its signal all the same. */
class TestCrashWriter : public QObject
{
    Q_OBJECT

private slots:
    void writesDump_data()
    {
        addColumns<int, int, QByteArray>("kind", "number", "address");
        addRow("bad address", 1, SIGSEGV, QByteArray("\naddress 0x18\n"));
        addRow("abort", 2, SIGABRT, QByteArray("\naddress 0x"));
        addRow("stack overflow", 3, SIGSEGV, QByteArray("\naddress 0x7"));
        addRow("other thread", 4, SIGSEGV, QByteArray("\naddress 0x18\n"));
        addRow("bus error", 100 + SIGBUS, SIGBUS, QByteArray());
        addRow("division by zero", 100 + SIGFPE, SIGFPE, QByteArray());
        addRow("bad instruction", 100 + SIGILL, SIGILL, QByteArray());
    }

    void writesDump()
    {
        QFETCH(int, kind);
        QFETCH(int, number);
        QFETCH(QByteArray, address);
        const QTemporaryDir folder;
        const QDateTime before = QDateTime::currentDateTimeUtc();
        const int status = runChild(folder.path(), kind);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), number);

        const QStringList dumps = QDir(folder.path()).entryList(QDir::Files);
        QCOMPARE(dumps.size(), 1);
        const QString user = QString::fromLocal8Bit(getpwuid(getuid())->pw_name);
        const QRegularExpressionMatch match =
            QRegularExpression("^Vorna_(\\d{4}-\\d{2}-\\d{2}-\\d{6})_(.+)\\.dmp$"_s).match(dumps.first());
        QVERIFY2(match.hasMatch(), qPrintable(dumps.first()));
        QCOMPARE(match.captured(2), user);
        QDateTime stamp = QDateTime::fromString(match.captured(1), "yyyy-MM-dd-HHmmss"_s);
        stamp.setTimeSpec(Qt::UTC);
        QVERIFY2(qAbs(before.secsTo(stamp)) <= 60, qPrintable(dumps.first()));

        QFile dump(folder.filePath(dumps.first()));
        QCOMPARE(int(dump.permissions()),
                 int(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser));
        QVERIFY(dump.open(QIODevice::ReadOnly));
        const QByteArray text = dump.readAll();
        QVERIFY2(text.startsWith("signal " + QByteArray::number(number) + "\naddress 0x"),
                 text.left(60).constData());
        QVERIFY2(text.contains(address), text.left(60).constData());
        const int trace = text.indexOf("\nbacktrace\n");
        const int map = text.indexOf("\nmemory map\n");
        QVERIFY(trace > 0 && map > trace);
        QVERIFY(text.mid(trace, map - trace).count("[0x") >= 2);
        QVERIFY(text.mid(map).contains("[stack]"));
    }

    void folderWithoutRoomIsNoHindrance()
    {
        // A folder that is gone: no file can be made there, whoever asks.
        const QTemporaryDir folder;
        const QString gone = folder.filePath("gone"_s);
        QDir().mkdir(gone);
        const int status = runChild(gone, 2, true);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGABRT);
    }

    void linkInItsPlaceIsNotFollowed()
    {
        const QTemporaryDir folder;
        const QString victim = folder.filePath("victim"_s);
        QFile file(victim);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
        file.close();
        const QString user = QString::fromLocal8Bit(getpwuid(getuid())->pw_name);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QDir().mkdir(folder.filePath("in"_s));
        for (int second = 0; second < 60; ++second) {
            const QString stamp = now.addSecs(second).toString("yyyy-MM-dd-HHmmss"_s);
            QFile::link(victim, folder.filePath("in/Vorna_%1_%2.dmp"_s.arg(stamp, user)));
        }
        const int status = runChild(folder.filePath("in"_s), 2);
        QCOMPARE(WTERMSIG(status), SIGABRT);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("mine"));
    }
};

QTEST_GUILESS_MAIN(TestCrashWriter)
#include "tst_crashwriter.moc"
