#include "core/controllers/shownfilescheck.h"

#include "core/records/filekind.h"
#include "db/manager/databasemanger.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {
// What broke the check off, mostly a lock, rarely ends sooner.
constexpr int retryMilliseconds = 10000;
} // namespace

ShownFilesCheck::ShownFilesCheck(DatabaseManger *manager, const FileFilterModel *shown, QObject *parent)
    : QObject(parent), m_manager(manager), m_shown(shown)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ShownFilesCheck::run);
    if (!m_manager)
        return;
    connect(m_manager, &DatabaseManger::updateMissedFiles, this, &ShownFilesCheck::forgetMissing);
    connect(m_manager, &DatabaseManger::filesRemoved, this, &ShownFilesCheck::forgetMissing);
    connect(m_manager, &DatabaseManger::checkBrokenOff, this, [this] { m_timer.start(retryMilliseconds); });
}

void ShownFilesCheck::start()
{
    if (!m_manager)
        return;
    forgetMissing();
    // The one that runs is about files that may not be shown any more.
    m_manager->endChecks();
    if (isPaused())
        m_isDue = true;
    else
        // Behind the event: several changes of what is shown come in a row.
        m_timer.start(0);
}

void ShownFilesCheck::look(qint64 fileId)
{
    if (!m_manager)
        return;
    m_manager->refreshFilePaths(fileId);
    if (isPaused())
        m_heldFiles.append(fileId);
    else
        m_manager->checkExternalFiles({fileId}, false);
}

void ShownFilesCheck::pause()
{
    ++m_pauses;
    const bool wasRunning = m_manager && m_manager->endChecks();
    m_isDue = m_isDue || wasRunning || m_timer.isActive();
    m_timer.stop();
    if (m_manager)
        m_heldFiles += m_manager->endSingleChecks();
}

void ShownFilesCheck::resume()
{
    m_pauses = qMax(0, m_pauses - 1);
    if (isPaused())
        return;
    if (m_isDue)
        start();
    if (m_manager && !m_heldFiles.isEmpty())
        m_manager->checkExternalFiles(std::exchange(m_heldFiles, {}), false);
}

bool ShownFilesCheck::isShown(qint64 fileId) const
{
    const int row = m_shown->contents()->rowOf(fileId);
    return row >= 0 && m_shown->isShown(row);
}

QVector<qint64> ShownFilesCheck::missingFileIds() const
{
    QVector<qint64> ids;
    if (!m_manager)
        return ids;
    const QSet<qint64> &missing = m_manager->missingFiles();
    std::copy_if(missing.cbegin(), missing.cend(), std::back_inserter(ids),
                 [this](qint64 fileId) { return isShown(fileId); });
    std::sort(ids.begin(), ids.end());
    return ids;
}

bool ShownFilesCheck::hasMissingFiles() const
{
    if (!m_manager)
        return false;
    // Each change of the selection asks, and a disk that is gone may have held a million files.
    if (!m_hasMissing) {
        const QSet<qint64> &missing = m_manager->missingFiles();
        m_hasMissing =
            std::any_of(missing.cbegin(), missing.cend(), [this](qint64 fileId) { return isShown(fileId); });
    }
    return *m_hasMissing;
}

void ShownFilesCheck::run()
{
    m_isDue = false;
    const QVector<qint64> ids = shownExternalFiles();
    // Paths first, so that the check finds files that have moved along with the database.
    m_manager->relinkPaths(ids);
    m_manager->checkExternalFiles(ids);
}

QVector<qint64> ShownFilesCheck::shownExternalFiles() const
{
    QVector<qint64> ids;
    const FileIndex &index = m_shown->contents()->fileIndex();
    // By the index's flat arrays: a million records would be a million look-ups in the main memory.
    const quint8 *kinds = index.kinds();
    const int count = m_shown->rowCount();
    for (int row = 0; row < count; ++row) {
        const int place = m_shown->contentsRow(row);
        if (kinds[place] == FileKind::external)
            ids.append(index.idAt(place));
    }
    return ids;
}
