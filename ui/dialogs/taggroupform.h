#pragma once

#include <QDialog>
#include <QPointer>
#include <QVector>

class GroupsController;
class QStandardItem;
class QStandardItemModel;
class TableView;

/**
 * Puts tags into groups and takes them out: a box a group, checked when all of the tags are in it, half
 * checked when some are. Only boxes that the user has changed have an effect, all of them or none: a change
 * that fails leaves the dialog open with its boxes. The controller is borrowed; modal use.
 */
class TagGroupForm : public QDialog
{
    Q_OBJECT

public:
    TagGroupForm(GroupsController *controller, const QVector<qint64> &tagIds, QWidget *parent = nullptr);

public slots:
    void accept() override;
    void done(int result) override;

private:
    void buildTable();
    void fillGroups();
    bool assign();

    QPointer<GroupsController> m_controller;
    QVector<qint64> m_tagIds;
    QStandardItemModel *m_model;
    TableView *m_view;
};
