#include "db/autolinks/autolinksync.h"

#include "core/records/autolink.h"
#include "core/records/tbnode.h"
#include "db/autolinks/autolinkshost.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/contents/filechecksums.h"
#include "fileops/files/filenames.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace {
constexpr int millisecondsOfStep = 8;
constexpr qint64 nanosecondsInMillisecond = 1000000;

} // namespace

AutoLinkSync::AutoLinkSync(AutoLinksHost &host, const Map<QString, AutoLink *> &links, QObject *parent)
    : QObject(parent), m_host(host), m_links(links)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &AutoLinkSync::startRound);
}

void AutoLinkSync::request(const QString &linkId, qint64 nodeId, bool notifyDuplicates)
{
    if (m_isEnded)
        return;
    Request &request = m_requests[linkId];
    request.due = m_clock.elapsed();
    bool &notify = request.notifyNodes[nodeId];
    notify = notify || notifyDuplicates;
    arm();
}

void AutoLinkSync::requestForEvent(const QString &linkId)
{
    m_waits.remove(linkId);
    requestLater(linkId, m_untilWhole);
}

void AutoLinkSync::requestLater(const QString &linkId, qint64 milliseconds)
{
    if (m_isEnded)
        return;
    const qint64 due = m_clock.elapsed() + milliseconds;
    const auto waiting = m_requests.find(linkId);
    if (waiting == m_requests.end())
        m_requests.insert(linkId, {due, {}});
    else
        waiting->due = qMin(waiting->due, due);
    arm();
}

void AutoLinkSync::end()
{
    m_isEnded = true;
    m_timer.stop();
    m_looks.end();
    m_match.reset();
    m_requests.clear();
    m_round.clear();
}

void AutoLinkSync::arm()
{
    if (m_isRunning || m_isEnded || m_requests.isEmpty())
        return;
    qint64 due = m_requests.cbegin()->due;
    for (const Request &request : qAsConst(m_requests))
        due = qMin(due, request.due);
    m_timer.start(int(qBound<qint64>(0, due - m_clock.elapsed(), m_untilLookBack)));
}

void AutoLinkSync::startRound()
{
    const qint64 time = m_clock.elapsed();
    QHash<QString, LinkedFolder> links;
    QStringList due;
    for (const AutoLink *link : m_links)
        links.insert(link->linkId(), {link->linkId(), link->absPath(), link->relPath(), {}, {}});
    m_round.clear();
    for (const QString &linkId : m_requests.keys()) {
        if (!links.contains(linkId)) {
            m_requests.remove(linkId);
        } else if (m_requests.value(linkId).due <= time) {
            m_round.insert(linkId, m_requests.take(linkId));
            due.append(linkId);
        }
    }
    m_isRunning = !due.isEmpty();
    if (m_isRunning)
        m_looks.run([links, due, path = m_host.databasePath()](
                        const ShouldEnd &shouldEnd) { return look(links, due, path, shouldEnd); },
                    [this](const Seen &seen) { takeSeen(seen); });
    else
        arm();
}

bool AutoLinkSync::holdsDatabase(const QString &folder, const QString &databasePath)
{
    const QString real = QFileInfo(folder).canonicalFilePath();
    return !real.isEmpty() &&
           QFileInfo(databasePath).canonicalFilePath().startsWith(Database::pathIn(real, QString()));
}

AutoLinkSync::Seen AutoLinkSync::look(const QHash<QString, LinkedFolder> &links, const QStringList &due,
                                      const QString &databasePath, const ShouldEnd &shouldEnd)
{
    Seen seen;
    for (const LinkedFolder &link : links) {
        if (!shouldEnd())
            seen.presences.insert(link.linkId, LinkPresence::of(link.path, link.relPath, databasePath));
    }
    QVector<LinkedFolder> folders;
    for (const QString &linkId : due) {
        LinkedFolder folder = links.value(linkId);
        const LinkPresence presence = seen.presences.value(linkId);
        if (!presence.isThere && presence.isThereByDatabase)
            folder.path = LinkPresence::folderOf(folder.relPath, databasePath);
        // The database may have been moved there since.
        if (holdsDatabase(folder.path, databasePath))
            continue;
        const FolderFiles found = FolderFiles::of(folder.path, shouldEnd);
        folder.relPath = Database::relativePath(folder.path, {true, databasePath});
        folder.unreadable = found.unreadable;
        folder.files.reserve(found.files.size());
        for (const FolderFile &file : found.files)
            folder.files.append({file});
        if (found.isThere)
            folders.append(folder);
    }
    seen.match = std::make_shared<FolderMatch>(folders);
    return seen;
}

void AutoLinkSync::takeSeen(const Seen &seen)
{
    emit linksSeen(seen.presences);
    m_match = seen.match;
    walk();
}

void AutoLinkSync::walk()
{
    if (m_isEnded)
        return;
    if (!m_match->walk(m_host.filesToCompare(), millisecondsOfStep)) {
        QTimer::singleShot(0, this, &AutoLinkSync::walk);
        return;
    }
    QVector<LinkedFolder> folders = m_match->takeFolders();
    m_match.reset();
    passOverLeftOut(folders);
    m_looks.run(
        [folders, path = m_host.databasePath()](const ShouldEnd &shouldEnd) {
            QVector<LinkedFolder> read = folders;
            readSuspects(read, path, shouldEnd);
            return read;
        },
        [this](const QVector<LinkedFolder> &read) { takeRead(read); });
}

void AutoLinkSync::readSuspects(QVector<LinkedFolder> &folders, const QString &databasePath,
                                const ShouldEnd &shouldEnd)
{
    for (LinkedFolder &folder : folders) {
        for (LinkedFile &file : folder.files) {
            if (file.state != LinkedFile::Suspect)
                continue;
            const QString path = Database::pathIn(folder.path, file.file.name);
            // Closing the database by another name would drop the locks that this process has on it.
            const FileChecksum read = RegularFile::isSame(path, databasePath)
                                          ? FileChecksum()
                                          : FileChecksums::ofFile(path, shouldEnd);
            file.readId = read.isRead ? file.idsByChecksum.value(read.checksum) : 0;
            // What cannot be read matches nothing, and nothing can be taken of it either.
            file.state = !read.isRead || file.readId != 0 ? LinkedFile::Known : LinkedFile::New;
        }
    }
}

void AutoLinkSync::passOverLeftOut(QVector<LinkedFolder> &folders) const
{
    for (LinkedFolder &folder : folders) {
        for (LinkedFile &file : folder.files) {
            if (file.state == LinkedFile::Suspect &&
                isLeftOut(Database::pathIn(folder.path, file.file.name), file.file))
                file.state = LinkedFile::Known;
        }
    }
}

void AutoLinkSync::noteRead(const QVector<LinkedFolder> &folders)
{
    QVector<qint64> touched;
    for (const LinkedFolder &folder : folders) {
        for (const LinkedFile &file : folder.files) {
            if (file.readId == 0)
                continue;
            if (file.readId == file.recordId)
                touched.append(file.recordId);
            else
                m_standIns.insert(Database::pathIn(folder.path, file.file.name), {file.file, file.readId});
        }
    }
    // Their records get the new time, and they need not be read again for it.
    if (!touched.isEmpty())
        m_host.checkExternalFiles(touched);
}

void AutoLinkSync::takeRead(QVector<LinkedFolder> folders)
{
    noteRead(folders);
    for (const LinkedFolder &folder : qAsConst(folders))
        serve(folder);
    m_round.clear();
    m_isRunning = false;
    emit roundDone();
    arm();
}

void AutoLinkSync::serve(const LinkedFolder &folder)
{
    AutoLink *link = m_links.value(folder.linkId);
    if (!link)
        return;
    qint64 wait = 0;
    QHash<QString, FolderFile> known;
    QHash<QString, FolderFile> fresh;
    const bool wantsAll = !link->flaggedNodes().isEmpty();
    bool isWaiting = false;
    for (const LinkedFile &file : folder.files) {
        const bool isKnown = file.state == LinkedFile::Known;
        if (isKnown && !wantsAll)
            continue;
        const QString path = Database::pathIn(folder.path, file.file.name);
        const bool isLeftOut = this->isLeftOut(path, file.file);
        if (isKnown ? file.recordId != 0 : isLeftOut && m_standIns.value(path).fileId != 0)
            known.insert(path, file.file);
        const bool isComing = !isKnown && isOnItsWay(path, file.file);
        isWaiting = isWaiting || isComing;
        if (isKnown || isLeftOut || isComing)
            continue;
        const qint64 missing = waitOf(path, file.file);
        if (missing == 0)
            fresh.insert(path, file.file);
        else
            wait = wait == 0 ? missing : qMin(wait, missing);
    }
    // What comes by itself comes together; whoever asks for it gets what there is.
    const bool isAskedFor = !m_round.value(folder.linkId).notifyNodes.isEmpty();
    const qint64 hold = holdOf(folder.linkId, wait > 0 && !fresh.isEmpty() && !isAskedFor);
    if (hold > 0)
        fresh.clear();
    // A file that one node took in is known from then on: the others would never get it.
    for (const qint64 nodeId : link->nodes()) {
        // A node that was linked just now gets what its folder holds, not only what comes to it.
        hand(*link, nodeId, fresh, false);
        // What is on its way for another one is known only then.
        if (link->isFlagged(nodeId) && !isWaiting)
            hand(*link, nodeId, known, true);
    }
    tellUnreadable(folder);
    // A file that is written to for hours is asked for ever more seldom.
    int &waits = m_waits[folder.linkId];
    waits = wait > 0 ? waits + 1 : 0;
    if (wait > 0)
        requestLater(folder.linkId, qMin(hold > 0 ? hold : m_untilLookBack, wait << qMin(waits / 2, 10)));
}

qint64 AutoLinkSync::holdOf(const QString &linkId, bool isHeld)
{
    const qint64 now = m_clock.elapsed();
    // In a folder where something is always written the newest file never is old enough.
    const qint64 rest = isHeld ? m_heldSince.value(linkId, now) + m_untilLookBack - now : 0;
    if (rest <= 0)
        m_heldSince.remove(linkId);
    else if (!m_heldSince.contains(linkId))
        m_heldSince.insert(linkId, now);
    return qMax<qint64>(0, rest);
}

void AutoLinkSync::hand(AutoLink &link, qint64 nodeId, const QHash<QString, FolderFile> &files, bool isOfAll)
{
    const QVector<qint64> tagIds = tagsOf(nodeId);
    const bool isUnderWay =
        isOfAll && std::any_of(m_deliveries.cbegin(), m_deliveries.cend(), [&](const Delivery &delivery) {
            return delivery.isOfAll && delivery.nodeId == nodeId && delivery.linkId == link.linkId();
        });
    if (isUnderWay)
        return;
    if (files.isEmpty() || tagIds.isEmpty()) {
        if (isOfAll)
            link.unflag(nodeId);
        return;
    }
    const bool notify = m_round.value(link.linkId()).notifyNodes.value(nodeId);
    QStringList paths = files.keys();
    std::sort(paths.begin(), paths.end());
    if (!m_host.autoLinkFiles(paths, tagIds, notify, ++m_lastRequest))
        return;
    m_deliveries.insert(m_lastRequest, {link.linkId(), nodeId, isOfAll, files});
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        QPair<FolderFile, int> &onItsWay = m_onTheirWay[file.key()];
        onItsWay = {*file, onItsWay.second + 1};
    }
}

bool AutoLinkSync::isOnItsWay(const QString &path, const FolderFile &file) const
{
    const auto onItsWay = m_onTheirWay.constFind(path);
    return onItsWay != m_onTheirWay.constEnd() && onItsWay->first.stamp == file.stamp;
}

bool AutoLinkSync::isLeftOut(const QString &path, const FolderFile &file) const
{
    const auto standIn = m_standIns.constFind(path);
    // Rights that change leave size and time of the contents as they are.
    if (standIn == m_standIns.constEnd() || !(standIn->file.stamp == file.stamp) ||
        standIn->file.changed != file.changed)
        return false;
    const qint64 fileId = standIn->fileId;
    return fileId == 0 || (m_host.filesToCompare().contains(fileId) && !m_host.isFileMissing(fileId));
}

qint64 AutoLinkSync::waitOf(const QString &path, const FolderFile &file)
{
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - file.changed / nanosecondsInMillisecond;
    if (age >= 0) {
        m_ahead.remove(path);
        return qMax<qint64>(0, m_untilWhole - age);
    }
    Ahead &ahead = m_ahead[path];
    if (ahead.since == 0 || !(ahead.stamp == file.stamp))
        ahead = {file.stamp, m_clock.elapsed()};
    return qMax<qint64>(0, ahead.since + m_untilWhole - m_clock.elapsed());
}

void AutoLinkSync::tellUnreadable(const LinkedFolder &folder)
{
    const QHash<qint64, bool> notify = m_round.value(folder.linkId).notifyNodes;
    if (!notify.values().contains(true) || m_toldNames.value(folder.linkId) == folder.unreadable)
        return;
    m_toldNames.insert(folder.linkId, folder.unreadable);
    if (folder.unreadable.isEmpty())
        return;
    m_host.tellError(
        tr("Files left out"),
        folder.unreadable.size() == 1
            ? tr("1 file has a name that cannot be read:\n%1").arg(folder.unreadable.first())
            : tr("%Ln files have names that cannot be read.", nullptr, folder.unreadable.size()));
}

QVector<qint64> AutoLinkSync::tagsOf(qint64 nodeId) const
{
    QVector<qint64> tagIds;
    const TBnode *node = m_host.knownNodes().value(nodeId);
    // An inverted node feeds like any other.
    for (; node && node->nodeType() == TagNode; node = node->parentNode())
        tagIds.prepend(node->tagId());
    return tagIds;
}

void AutoLinkSync::takeOutcome(const AutoLinkOutcome &outcome)
{
    if (m_isEnded || !m_deliveries.contains(outcome.requestId))
        return;
    const Delivery delivery = m_deliveries.take(outcome.requestId);
    for (auto file = delivery.files.cbegin(); file != delivery.files.cend(); ++file) {
        const auto onItsWay = m_onTheirWay.find(file.key());
        if (--onItsWay->second == 0)
            m_onTheirWay.erase(onItsWay);
    }
    if (outcome.isWhole) {
        settle(delivery, outcome);
    } else if (!outcome.isCanceled) {
        // Whoever cancels is left alone until something happens.
        ++m_failures;
        requestLater(delivery.linkId, m_untilLookBack << qMin(m_failures - 1, 6));
    }
}

void AutoLinkSync::settle(const Delivery &delivery, const AutoLinkOutcome &outcome)
{
    m_failures = 0;
    const auto note = [&](const QHash<QString, qint64> &standIns) {
        for (auto standIn = standIns.cbegin(); standIn != standIns.cend(); ++standIn) {
            if (delivery.files.contains(standIn.key()))
                m_standIns.insert(standIn.key(), {delivery.files.value(standIn.key()), *standIn});
        }
    };
    note(outcome.standIns);
    // The check may leave them as they are, as what cannot be read.
    note(outcome.known);
    AutoLink *link = m_links.value(delivery.linkId);
    if (link && delivery.isOfAll)
        link->unflag(delivery.nodeId);
    if (link && !link->flaggedNodes().isEmpty())
        requestLater(delivery.linkId, 0);
    if (!outcome.known.isEmpty())
        m_host.checkExternalFiles(outcome.known.values().toVector());
    // What stood still for a moment may be written on.
    if (outcome.addedCount > 0)
        requestLater(delivery.linkId, m_untilLookBack);
}
