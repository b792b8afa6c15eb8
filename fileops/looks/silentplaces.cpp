#include "fileops/looks/silentplaces.h"

#include "fileops/looks/awaitedlook.h"

#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QMutex>

#include <algorithm>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace {
// So many threads are left behind at most before nothing is looked at any more.
constexpr int mostPlaces = 32;
// A disk whose top answers within this is not the silent one.
constexpr int trialMilliseconds = 200;

struct Places
{
    QMutex mutex;
    QList<std::weak_ptr<const QByteArray>> places;
};
// Never destroyed: threads that were left behind may still let go of theirs while the process ends.
Places &known = *new Places;

/** Signs that would part the columns stand there as three octal digits. */
QByteArray decoded(const QByteArray &column)
{
    QByteArray text;
    for (int i = 0; i < column.size(); ++i) {
        const bool isCode = column.at(i) == '\\' && i + 3 < column.size();
        text.append(isCode ? char(column.mid(i + 1, 3).toInt(nullptr, 8)) : column.at(i));
        i += isCode ? 3 : 0;
    }
    return text;
}

/** Where disks are mounted. */
QList<QByteArray> mounts()
{
    QList<QByteArray> places;
    // The system's own table, which knows no disk by looking at it.
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return places;
    const QList<QByteArray> lines = table.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            places.append(decoded(line.split(' ').value(4)));
    }
    return places;
}

bool isBelow(const QByteArray &path, const QByteArray &place)
{
    return path.startsWith(place) &&
           (place.endsWith('/') || path.size() == place.size() || path.at(place.size()) == '/');
}

bool answers(const QByteArray &place)
{
    QElapsedTimer passed;
    passed.start();
    const auto look = [place](const AwaitedLook::ShouldEnd &) {
        struct stat status = {};
        return ::stat(place.constData(), &status);
    };
    return AwaitedLook::run(look, [&passed] { return passed.hasExpired(trialMilliseconds); }).has_value();
}
} // namespace

bool SilentPlaces::isAnyDiskSilent()
{
    QElapsedTimer passed;
    passed.start();
    const auto look = [](const AwaitedLook::ShouldEnd &shouldEnd) {
        // Its own answer, not what the system remembers of it.
        struct statvfs status = {};
        for (const QByteArray &place : mounts()) {
            if (!shouldEnd())
                ::statvfs(place.constData(), &status);
        }
        return true;
    };
    return !AwaitedLook::run(look, [&passed] { return passed.hasExpired(trialMilliseconds); });
}

QByteArray SilentPlaces::mountOf(const QByteArray &path)
{
    QByteArray mount = "/";
    for (const QByteArray &place : mounts()) {
        if (place.size() > mount.size() && isBelow(path, place))
            mount = place;
    }
    return mount;
}

SilentPlaces::Token SilentPlaces::note(const QByteArray &path)
{
    const QByteArray mount = mountOf(path);
    // Behind a link the path leads to another disk than it seems to.
    const bool isMountSilent = mount.size() > 1 && !answers(mount);
    auto token =
        std::make_shared<const QByteArray>(isMountSilent ? mount : path.left(qMax(1, path.lastIndexOf('/'))));
    const QMutexLocker locker(&known.mutex);
    known.places.append(token);
    return token;
}

bool SilentPlaces::contain(const QByteArray &path)
{
    const QMutexLocker locker(&known.mutex);
    int count = 0;
    return std::any_of(known.places.cbegin(), known.places.cend(), [&](const auto &place) {
        const Token token = place.lock();
        count += token ? 1 : 0;
        return token && (count == mostPlaces || isBelow(path, *token));
    });
}

bool SilentPlaces::areNone()
{
    const QMutexLocker locker(&known.mutex);
    const auto isGone = [](const std::weak_ptr<const QByteArray> &place) { return place.expired(); };
    known.places.erase(std::remove_if(known.places.begin(), known.places.end(), isGone), known.places.end());
    return known.places.isEmpty();
}
