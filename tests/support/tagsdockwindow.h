#pragma once

#include "tests/support/localcollection.h"
#include "ui/docks/tagstabledock.h"
#include "ui/mainui.h"
#include "ui/views/tableview.h"
#include "ui/views/taggroupbar.h"

#include <QAction>
#include <QHash>
#include <QMainWindow>

/** The tags dock in a shown window of its own, over a new collection with the tags red, green and blue. */
class TagsDockWindow
{
public:
    TagsDockWindow() : ui(&window), dock(new TagsTableDock(&window))
    {
        for (const char *name : {"red", "green", "blue"})
            m_ids.insert(QLatin1String(name), open.tags().addTag(QLatin1String(name)));
        dock->takePlaces(ui);
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        table = dock->findChild<TableView *>();
        bar = dock->findChild<TagGroupBar *>();
        attach();
        window.show();
    }
    ~TagsDockWindow() { detach(); }

    void attach()
    {
        dock->setTagsController(&open.tags());
        dock->setGroupsController(&open.groups());
    }
    void detach()
    {
        dock->setTagsController(nullptr);
        dock->setGroupsController(nullptr);
    }

    qint64 id(const char *tag) const { return m_ids.value(QLatin1String(tag)); }
    qint64 addGroup(const char *name, bool visible = true)
    {
        return open.groups().addGroup(QLatin1String(name), visible);
    }
    void showTab(qint64 groupId) { bar->setCurrentIndex(bar->indexOfGroup(groupId)); }

    /** The names in the table, joined by commas. */
    QString shown() const { return names().join(QLatin1Char(',')); }
    QString tabs() const
    {
        QStringList texts;
        for (int i = 0; i < bar->count(); ++i)
            texts.append(bar->tabText(i));
        return texts.join(QLatin1Char(','));
    }
    void select(const QStringList &tags)
    {
        table->selectionModel()->clear();
        for (const QString &tag : tags) {
            const QModelIndex index = table->model()->index(names().indexOf(tag), 0);
            table->selectionModel()->setCurrentIndex(index,
                                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    QAction *action(const char *text) const
    {
        for (QAction *found : dock->findChildren<QAction *>()) {
            if (found->text() == QLatin1String(text))
                return found;
        }
        return nullptr;
    }

    LocalCollection open;
    QMainWindow window;
    MainUi ui;
    TagsTableDock *dock;
    TableView *table;
    TagGroupBar *bar;

private:
    QStringList names() const
    {
        QStringList result;
        const QAbstractItemModel *model = table->model();
        for (int row = 0; model && row < model->rowCount(); ++row)
            result.append(model->index(row, 0).data().toString());
        return result;
    }

    QHash<QString, qint64> m_ids;
};
