#pragma once

#include "fileops/presentableduplicates.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class MainViewController;
class QTreeWidgetItem;

namespace Ui {
class DuplicatePrompt;
}

/**
 * Reports what duplicate management left out of a batch, and asks which of the files that only share a name
 * are to be added all the same. Modal use; GUI thread.
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
    void selectAll();
    void deselectAll();

private:
    void build(const PresentableDuplicates &duplicates);
    void showContentMatches(const PresentableDuplicates &duplicates);
    void showNameMatches(const QList<DuplicateMatch> &matches);
    void addNameMatch(const DuplicateMatch &match);
    void checkAll(Qt::CheckState state);

    std::unique_ptr<Ui::DuplicatePrompt> m_ui;
    QPointer<MainViewController> m_controller;
    // Owned by the tree; one for each path that can be chosen.
    QVector<QTreeWidgetItem *> m_choices;
};
