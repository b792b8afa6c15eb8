#pragma once

#include "core/controllers/extractionplan.h"

#include <QObject>

class DatabaseManger;
class UserPrompts;

/**
 * The main thread's half of an extraction into a folder: it looks at what stands there, asks about what is in
 * the way and hands the rest to the worker. A look that takes long shows progress and lets events through, so
 * that the database may be closed meanwhile, and this object be gone. GUI thread.
 */
class FolderExtraction : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void setConflictAsker(const FileConflictAsker &asker) { m_asker = asker; }
    /** Nothing while another one is being settled. */
    void run(DatabaseManger *manager, const QString &folder, const QVector<qint64> &fileIds,
             UserPrompts &prompts);
    /** Ends the look, and with it the extraction. */
    void cancel() { m_isCanceled = true; }

signals:
    void started(QString label);
    void progress(QString text, int percent);
    void finished();

private:
    bool compare(ExtractionPlan &plan);
    bool ask(const QString &folder, ExtractionPlan &plan, UserPrompts &prompts) const;

    FileConflictAsker m_asker;
    bool m_isRunning = false;
    bool m_isCanceled = false;
};
