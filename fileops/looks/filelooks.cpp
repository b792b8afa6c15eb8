#include "fileops/looks/filelooks.h"

#include "app/settings/crashstack.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/looks/silentplaces.h"

#include <QFile>
#include <QMutex>
#include <QWaitCondition>

#include <atomic>
#include <thread>

namespace {
constexpr int silenceMilliseconds = 500;

/** One walk along the paths, which outlives who waits for it where a disk does not answer. */
struct Walk
{
    QVector<QByteArray> paths;
    QVector<AnsweredLook> looks;
    AnsweredLook *places = nullptr; ///< in `looks`
    std::atomic<int> done{0};       ///< those before it are not touched any more
    QMutex mutex;
    QWaitCondition over;
    SilentPlaces::Token silence; ///< once it was left behind
    bool isOver = false;
};

bool walkAlong(Walk &walk, const AwaitedLook::ShouldEnd &shouldEnd)
{
    const bool isAllSaid = SilentPlaces::areNone();
    for (int i = 0; i < walk.paths.size() && !shouldEnd(); ++i) {
        const QByteArray &path = walk.paths.at(i);
        if (isAllSaid || !SilentPlaces::contain(path)) {
            const FileLook look = FileLook::at(path.constData());
            if (shouldEnd())
                break;
            walk.places[i] = {true, look};
        }
        walk.done = i + 1;
    }
    const QMutexLocker locker(&walk.mutex);
    walk.isOver = true;
    walk.silence.reset();
    walk.over.wakeAll();
    return true;
}

/** Notes that the disk of a file keeps silent, unless the walk comes back after all. */
void noteSilence(Walk &walk, const QByteArray &path)
{
    const SilentPlaces::Token token = SilentPlaces::note(path);
    const QMutexLocker locker(&walk.mutex);
    if (!walk.isOver)
        walk.silence = token;
}

/** The same for a walk that nobody wanted to wait for, which mostly is near its end. */
void noteSilenceLater(const std::shared_ptr<Walk> &walk, const QByteArray &path)
{
    std::thread([walk, path] {
        provideCrashStack();
        QMutexLocker locker(&walk->mutex);
        if (!walk->isOver)
            walk->over.wait(&walk->mutex, silenceMilliseconds);
        const bool isOver = walk->isOver;
        locker.unlock();
        if (!isOver)
            noteSilence(*walk, path);
    }).detach();
}
} // namespace

QVector<AnsweredLook> FileLooks::at(const QVector<QByteArray> &paths, const std::function<bool()> &isUnwanted)
{
    QVector<AnsweredLook> looks;
    looks.reserve(paths.size());
    while (looks.size() < paths.size()) {
        const auto current = std::make_shared<Walk>();
        current->paths = paths.mid(looks.size());
        current->looks.resize(current->paths.size());
        current->places = current->looks.data();
        const auto look = [current](const AwaitedLook::ShouldEnd &shouldEnd) {
            return walkAlong(*current, shouldEnd);
        };
        const bool isBack = AwaitedLook::run(look, isUnwanted).has_value();
        const int done = current->done;
        for (int i = 0; i < done; ++i)
            looks.append(current->places[i]);
        const QByteArray next = current->paths.value(done);
        if (isUnwanted()) {
            if (!isBack && !next.isEmpty())
                noteSilenceLater(current, next);
            break;
        }
        if (isBack || next.isEmpty())
            continue;
        noteSilence(*current, next);
        looks.append(AnsweredLook());
    }
    looks.resize(paths.size());
    return looks;
}

QVector<AnsweredLook> FileLooks::at(const QStringList &paths, const std::function<bool()> &isUnwanted)
{
    QVector<QByteArray> encoded;
    encoded.reserve(paths.size());
    for (const QString &path : paths)
        encoded.append(QFile::encodeName(path));
    return at(encoded, isUnwanted);
}

AnsweredLook FileLooks::at(const QString &path, const std::function<bool()> &isUnwanted)
{
    return at(QStringList{path}, isUnwanted).first();
}
