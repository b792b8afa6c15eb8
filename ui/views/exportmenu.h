#pragma once

#include "core/controllers/exportselection.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class MainUi;
class MainViewController;
class QAction;
class QMenu;
class QWidget;

/**
 * The entries that export what is selected in one view. They stand in a sub-menu of its context menu, and in
 * that of the window for as long as the view was the last one to have the focus. Belongs to the view. GUI
 * thread.
 */
class ExportMenu : public QObject
{
    Q_OBJECT

public:
    /** The selection is asked for at the click. */
    ExportMenu(std::function<ExportSelection()> selection, QWidget *view);
    ~ExportMenu() override;

    void setController(MainViewController *controller);
    void takePlace(MainUi &ui);
    /** Its focus brings the entries into the window's menu. */
    void watch(QWidget *view);
    /** The entries are off without a selection, and for a database on a server. */
    void updateAvailability(bool hasSelection);
    /** The sub-menu, for a context menu. */
    QMenu *menu() const { return m_menu.get(); }
    /** A further entry of the sub-menu alone. */
    void putFirst(QAction *entry);
    /** Whether the database can export at all. */
    bool isLocal() const;
    /** Into the window's menu. */
    void bringEntries();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(int form, const QString &text, const char *objectName);

    const std::function<ExportSelection()> m_selection;
    QWidget *m_view;
    std::unique_ptr<QMenu> m_menu;
    QPointer<QMenu> m_windowMenu;
    QPointer<MainViewController> m_controller;
    QList<QAction *> m_entries;
};
