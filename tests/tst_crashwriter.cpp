#include "app/crashwriter.h"
#include "app/settings/crashstack.h"
#include "tests/support/text.h"

#include <csignal>
#include <cstdlib>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using Fault = std::function<void()>;
Q_DECLARE_METATYPE(Fault)

namespace {

const std::uintptr_t badAddress = 0x18;
QString dumpName(const QDateTime &utc)
{
    const QString user = QString::fromLocal8Bit(getpwuid(getuid())->pw_name);
    return "Vorna_%1_%2.dmp"_s.arg(utc.toString("yyyy-MM-dd-HHmmss"_s), user);
}

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

/** Faults in a child whose working directory is the folder. Its status as wait() tells it. */
int runChild(const QString &folder, const Fault &fault)
{
    const pid_t child = fork();
    if (child == 0) {
        // No core beside the dump, and no reports of the test's own or of a sanitizer.
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none);
        for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTERM})
            signal(number, SIG_DFL);
        umask(0);
        if (chdir(QFile::encodeName(folder).constData()) == 0) {
            installCrashWriter();
            fault();
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
        addColumns<Fault, int, QByteArray>("fault", "number", "address");
        addRow("bad address", Fault(readBadAddress), SIGSEGV, QByteArray("\naddress 0x18\n"));
        addRow("abort", Fault(abort), SIGABRT, QByteArray("\naddress 0x"));
        addRow("stack overflow", Fault([] { overflowStack(0); }), SIGSEGV, QByteArray("\naddress 0x7"));
        addRow("other thread", Fault([] { std::thread(readBadAddress).join(); }), SIGSEGV,
               QByteArray("\naddress 0x18\n"));
        addRow("stack overflow of another thread", Fault([] {
                   std::thread([] {
                       provideCrashStack();
                       overflowStack(0);
                   }).join();
               }),
               SIGSEGV, QByteArray("\naddress 0x7"));
        for (const int number : {SIGBUS, SIGFPE, SIGILL})
            addRow(strsignal(number), Fault([number] { raise(number); }), number, QByteArray());
    }

    void writesDump()
    {
        QFETCH(Fault, fault);
        QFETCH(int, number);
        QFETCH(QByteArray, address);
        const QTemporaryDir folder;
        const QDateTime before = QDateTime::currentDateTimeUtc();
        const int status = runChild(folder.path(), fault);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), number);

        const QStringList dumps = QDir(folder.path()).entryList(QDir::Files);
        QCOMPARE(dumps.size(), 1);
        QStringList names;
        for (int second = 0; second <= 60; ++second)
            names << dumpName(before.addSecs(second));
        QVERIFY2(names.contains(dumps.first()), qPrintable(dumps.first()));

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
        const int status = runChild(folder.path(), [&folder] {
            if (rmdir(QFile::encodeName(folder.path()).constData()) == 0)
                abort();
        });
        QCOMPARE(WTERMSIG(status), SIGABRT);
    }

    void linkInItsPlaceIsNotFollowed()
    {
        const QTemporaryDir folder;
        QFile victim(folder.filePath("victim"_s));
        QVERIFY(victim.open(QIODevice::WriteOnly));
        victim.close();
        QDir().mkdir(folder.filePath("in"_s));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int second = 0; second < 60; ++second)
            victim.link(folder.filePath("in/"_s + dumpName(now.addSecs(second))));
        QCOMPARE(WTERMSIG(runChild(folder.filePath("in"_s), abort)), SIGABRT);
        QCOMPARE(victim.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestCrashWriter)
#include "tst_crashwriter.moc"
