#pragma once

#include "fileops/worker/presentableduplicates.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class ContentMatchModel;
class MainViewController;
class NameMatchModel;
class QKeyEvent;
class TableView;

namespace Ui {
class DuplicatePrompt;
}

/**
 * Reports what duplicate management left out of a batch, and asks which of the files that only share a name
 * are to be added all the same. Stays open, with its ticks, until these are in the database. Modal use; GUI
 * thread.
 */
class DuplicatePrompt : public QDialog
{
    Q_OBJECT

public:
    DuplicatePrompt(const PresentableDuplicates &duplicates, MainViewController *controller,
                    QWidget *parent = nullptr);
    ~DuplicatePrompt() override;

    /** The paths that are checked. */
    QStringList chosenPaths() const;

public slots:
    /** Has the checked files added, and waits for that. */
    void accept() override;
    void selectAll();
    void deselectAll();

private:
    void build(const PresentableDuplicates &duplicates);
    void makeModels(const PresentableDuplicates &duplicates);
    QString headText(const QVector<qint64> &tagIds) const;
    void showContentMatches();
    void showNameMatches();
    void fillNameTable();
    void settle(const QStringList &paths, bool areAdded);
    void setWaiting(bool isWaiting);
    void copyLines(QKeyEvent *event);
    void toggleChoice(QKeyEvent *event);

    std::unique_ptr<Ui::DuplicatePrompt> m_ui;
    QPointer<MainViewController> m_controller;
    ContentMatchModel *m_contentMatches = nullptr;
    NameMatchModel *m_nameMatches = nullptr;
    QStringList m_awaited; ///< what is being added
};
