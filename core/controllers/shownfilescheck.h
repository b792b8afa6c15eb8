#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>

#include <optional>

class DatabaseManger;
class FileFilterModel;

/**
 * Has the external files that are shown looked at, whenever others come into view: their paths are mended,
 * and the manager finds out which are missing or changed. All of it goes on behind the event that asked for
 * it, and ends when the next one does; one that a lock or a cancel broke off is made up for. Belongs to the
 * controller of the files. GUI thread.
 */
class ShownFilesCheck : public QObject
{
    Q_OBJECT

public:
    /** Both are borrowed; the manager may be null. */
    ShownFilesCheck(DatabaseManger *manager, const FileFilterModel *shown, QObject *parent);

    /** Looks at what is shown when the window comes to it; takes the place of the check before. */
    void start();
    /** Finds one external file anew if need be, and looks whether it is in its place. */
    void look(qint64 fileId);
    /** Between the two, which count, none begins; what had begun is made up for afterwards. */
    void pause();
    void resume();
    bool isPaused() const { return m_pauses > 0; }

    /** Those of the shown files that were not in their places at the last look, by rising ids. */
    QVector<qint64> missingFileIds() const;
    bool hasMissingFiles() const;

private:
    bool isShown(qint64 fileId) const;
    void forgetMissing() { m_hasMissing.reset(); }
    void run();
    QVector<qint64> shownExternalFiles() const;

    DatabaseManger *m_manager;
    const FileFilterModel *m_shown;
    QTimer m_timer;
    mutable std::optional<bool> m_hasMissing; ///< null until it is asked for
    int m_pauses = 0;
    QVector<qint64> m_heldFiles; ///< to be looked at by themselves after the pause
    bool m_isDue = false;        ///< after the pause
};
