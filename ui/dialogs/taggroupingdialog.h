#pragma once

#include <QDialog>
#include <QPointer>

class GroupsController;
class QCheckBox;
class QKeyEvent;
class QLayout;
class QPushButton;
class TableView;

/**
 * The list of all tag groups: makes, renames and deletes them, and says which ones are tabs. Every change is
 * done at once. The controller is borrowed; modal use.
 */
class TagGroupingDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TagGroupingDialog(GroupsController *controller, QWidget *parent = nullptr);

public slots:
    void done(int result) override;

private:
    void buildTable();
    QLayout *makeButtons();
    void addGroups();
    void deleteSelected();
    void toggleTab(QKeyEvent *event);
    void updateButtons();
    void select(qint64 groupId);

    QPointer<GroupsController> m_controller;
    TableView *m_view;
    QCheckBox *m_succession;
    QPushButton *m_delete;
};
