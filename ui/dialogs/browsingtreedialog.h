#pragma once

#include <QDialog>
#include <QModelIndex>
#include <QPointer>

class BrowsTreeController;
class BrowsingTreeTableModel;
class QKeyEvent;
class QLayout;
class QPushButton;
class TableView;

/**
 * The browsing trees of a server database: shows one, makes, renames and deletes them. Every change is done
 * at once. The controller is borrowed; modal use.
 */
class BrowsingTreeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit BrowsingTreeDialog(BrowsTreeController *controller, QWidget *parent = nullptr);

public slots:
    void done(int result) override;

signals:
    /** Title and text of a message box. */
    void showError(const QString &title, const QString &text);
    /** A new tree was to get the name of another one. */
    void treeDuplicated();

private:
    void buildTable();
    QLayout *makeButtons();
    void restoreLayout();
    void createTree();
    void deleteTree();
    bool mayDelete(const QString &name);
    void handleKey(QKeyEvent *event);
    /** Gives each row its radio button, and the table its current row, after the rows have become others. */
    void setUpRows();
    void updateButtons();

    QPointer<BrowsTreeController> m_controller;
    BrowsingTreeTableModel *m_model;
    TableView *m_view;
    QPushButton *m_create;
    QPushButton *m_delete;
    qint64 m_currentId = 0; ///< the tree of the current row
    bool m_isReset = false; ///< the rows are new and nothing was made of them yet
};
