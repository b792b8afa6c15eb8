#include "core/controllers/folderextraction.h"

#include "core/controllers/miscoperationthread.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "db/manager/databasemanger.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>

namespace {
constexpr int patience = 200; // milliseconds until progress shows
constexpr int eventInterval = 50;

QVector<ExtractionPlan::Source> sourcesOf(const DatabaseManger &manager, const QVector<qint64> &fileIds)
{
    QVector<ExtractionPlan::Source> sources;
    sources.reserve(fileIds.size());
    QSet<qint64> seen;
    for (const qint64 fileId : fileIds) {
        const File *file = manager.file(fileId);
        // A file that was dragged twice would conflict with itself.
        if (!file || file->internal() == FileKind::hyperlink || seen.contains(fileId))
            continue;
        seen.insert(fileId);
        const QString path = file->internal() == FileKind::external ? file->path() : QString();
        sources.append({fileId, file->name(), path, file->size(), file->checksum()});
    }
    return sources;
}
} // namespace

void FolderExtraction::run(DatabaseManger *manager, const QString &folder, const QVector<qint64> &fileIds,
                           UserPrompts &prompts)
{
    // The comparison runs events, in which the command may be given once more.
    if (m_isRunning)
        return;
    const QPointer<FolderExtraction> self(this);
    const QPointer<DatabaseManger> source(manager);
    ExtractionPlan plan(folder, sourcesOf(*manager, fileIds));
    m_isRunning = true;
    m_isCanceled = false;
    const bool isSettled = compare(plan) && self && ask(folder, plan, prompts);
    if (!self)
        return;
    m_isRunning = false;
    if (isSettled && source)
        source->extractFiles(plan.fileIds(), plan.targetPaths(), plan.replacedPaths(), plan.comparedPaths());
}

bool FolderExtraction::compare(ExtractionPlan &plan)
{
    const QPointer<FolderExtraction> self(this);
    QElapsedTimer sinceStart;
    QElapsedTimer sinceEvents;
    sinceStart.start();
    bool isShown = false;
    const auto shouldEnd = [&] {
        if (!self || m_isCanceled)
            return true;
        if (sinceStart.elapsed() < patience || (isShown && sinceEvents.elapsed() < eventInterval))
            return false;
        if (!isShown) {
            emit started(tr("Comparing with the files in the folder..."));
            emit progress(QString(), -1);
        }
        isShown = true;
        // The progress window is modal: nothing but its Cancel can be reached.
        QCoreApplication::processEvents();
        sinceEvents.start();
        return !self || m_isCanceled;
    };
    const bool isCompared = plan.compare(shouldEnd);
    if (self && isShown)
        emit finished();
    return isCompared;
}

bool FolderExtraction::ask(const QString &folder, ExtractionPlan &plan, UserPrompts &prompts) const
{
    const QVector<FileConflict> conflicts = plan.conflicts();
    if (conflicts.size() == 1) {
        const FileConflict &conflict = conflicts.first();
        plan.settle(conflict.fileId, MiscOperationThread::askUserIfUserNewName(
                                         folder, conflict.name, conflict.newName,
                                         MiscOperationThread::ExtractionQuestion, prompts));
        return true;
    }
    if (conflicts.isEmpty())
        return true;
    // A copy: the dialog outlives this object when the database is closed under it.
    const FileConflictAsker asker = m_asker;
    const std::optional<FileConflictChoices> choices = asker ? asker(folder, conflicts) : std::nullopt;
    if (!choices)
        return false;
    for (const auto &choice : *choices)
        plan.settle(choice.first, choice.second);
    return true;
}
