#pragma once

#include <QDialog>
#include <QHash>
#include <QPointer>
#include <QVector>

#include <memory>

class MainViewController;
class QListWidgetItem;

namespace Ui {
class FileLocationDialog;
}

/**
 * Finds missing external files again: one by one, or all that lie in folders. Nothing is changed here: after
 * it was accepted, locatedFiles() and linksToDelete() say what is to be done. Modal use; GUI thread.
 */
class FileLocationDialog : public QDialog
{
    Q_OBJECT

public:
    FileLocationDialog(MainViewController *controller, const QVector<qint64> &missingIds,
                       QWidget *parent = nullptr);
    ~FileLocationDialog() override;

    /** File ids to paths. */
    QHash<qint64, QString> locatedFiles() const;
    /** The files whose links are to be deleted; none unless that was asked for. */
    QVector<qint64> linksToDelete() const;

public slots:
    /** Applies what was found, and deletes the links of the rest. */
    void accept() override;
    /** Leaves the rest alone. */
    void onlyApplyFoundFiles();
    void addFolder();
    void removeSelectedFolder();
    void locateFileFromItem(QListWidgetItem *item);
    /** Looks for all that was not chosen by hand. */
    void evaluateFolderSelection();

private:
    void connectButtons();
    void askForDeletion();
    bool isTaken(const QString &path, qint64 fileId) const;
    /** Whether an id is still that of the file that was missing when the dialog opened. */
    bool isStillMeant(qint64 fileId) const;
    QVector<qint64> remaining() const;
    void showRemaining();
    void showCounts();
    void updateButtons();

    std::unique_ptr<Ui::FileLocationDialog> m_ui;
    QPointer<MainViewController> m_controller;
    const QVector<qint64> m_missingIds;
    QHash<qint64, QString> m_idCodes; ///< theirs, as an id may become another file's meanwhile
    QHash<qint64, QString> m_chosen;
    QHash<qint64, QString> m_found; ///< in the folders
    bool m_deletesRest = false;
};
