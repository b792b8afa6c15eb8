#include "db/manager/wholereload.h"

#include "db/manager/errorteller.h"
#include "db/manager/pendingreloads.h"
#include "db/manager/recordkeeper.h"
#include "db/manager/recordloads.h"

#include <QTimer>

#include <utility>

bool WholeReload::begin()
{
    // One word for the whole reading, instead of one for each table that a lock keeps back.
    m_errors.beginSilence();
    if (m_host.beginReading()) {
        m_records.loadState().begin();
        return true;
    }
    m_errors.endSilence();
    m_records.loadState().fail();
    return false;
}

bool WholeReload::end()
{
    m_host.endReading();
    m_records.loadState().end();
    m_errors.endSilence();
    return m_records.loadState().isWhole();
}

void WholeReload::run()
{
    // What came meanwhile is not in the state that is being read.
    if (m_records.loadState().isLoading()) {
        m_loads.keep(PendingReloads::FullReload, {0});
        return;
    }
    if (!begin()) {
        if (m_errors.sawBusy())
            m_loads.keep(PendingReloads::FullReload, {0});
        return;
    }
    emit aboutToReload();
    m_host.beginFiles();
    m_isReadingFiles = m_loads.areFilesBeingRead() && m_loads.areFilesMany();
    if (m_isReadingFiles)
        m_errors.endSilence();
    else
        readAll();
}

void WholeReload::goOn()
{
    if (!std::exchange(m_isReadingFiles, false))
        return;
    m_errors.beginSilence();
    readAll();
}

void WholeReload::readAll()
{
    m_loads.loadBrowsingTrees();
    m_host.chooseBrowsingTree();
    m_loads.loadAllFiles();
    m_loads.loadAllNodes();
    m_loads.loadAllTags();
    m_loads.loadAllGroups();
    m_loads.loadAllRelationNodes();
    end();
    emit reloaded();
    // What could not be read is missing now.
    if (m_errors.sawBusy())
        m_loads.keep(PendingReloads::FullReload, {0});
}

void WholeReload::runLater()
{
    if (std::exchange(m_isDue, true))
        return;
    QTimer::singleShot(0, this, [this] {
        m_isDue = false;
        run();
    });
}
