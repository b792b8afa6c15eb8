#pragma once

#include "app/settings/addingsettings.h"
#include "fileops/provider/fileoperationprovider.h"
#include "models/contents/sorter.h"
#include "tests/support/localcollection.h"
#include "ui/views/listview.h"
#include "ui/views/mainfilesview.h"
#include "ui/widgets/mainui.h"

#include <QMainWindow>

/** A test of the main view, which stands in a window of its own on a new database. */
class FilesViewTest : public QObject
{
protected:
    void openView()
    {
        m_fixture = std::make_unique<LocalCollection>();
        m_window = std::make_unique<QMainWindow>();
        m_ui = std::make_unique<MainUi>(m_window.get());
        m_view = new MainFilesView(m_window.get());
        m_view->takePlaces(*m_ui);
        m_window->setCentralWidget(m_view);
        m_view->setController(&m_fixture->mainView());
        m_window->resize(1024, 700);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void closeView()
    {
        m_view->setController(nullptr);
        m_window.reset();
        m_fixture.reset();
    }

    // Shows a file for each letter: Internal, External, Hyperlink, Missing.
    QVector<qint64> addKinds(const QString &kinds)
    {
        QVector<qint64> ids;
        for (const QChar kind : kinds) {
            const QString name = "%1.txt"_s.arg(ids.size());
            AddingSettings::setLinkToFiles(kind != QLatin1Char('I'));
            ids << (kind == QLatin1Char('H') ? m_fixture->add(QUrl("https://example.org/"_s + name))
                                             : m_fixture->addExternal(name));
            if (kind == QLatin1Char('M') && QFile::remove(m_fixture->filePath(name)))
                emit m_fixture->manager()->findChild<FileOperationProvider *>()->noLongerPresent(
                    {ids.last()});
        }
        showAll();
        return ids;
    }

    QAbstractItemView *list() const { return m_view->findChild<ListView *>(); }
    void showAll() { m_fixture->mainView().showSpecialNode(AllFiles); }
    const File *file(qint64 id) { return m_fixture->file(id); }

    std::unique_ptr<LocalCollection> m_fixture;
    std::unique_ptr<QMainWindow> m_window;
    std::unique_ptr<MainUi> m_ui;
    MainFilesView *m_view = nullptr;
};
