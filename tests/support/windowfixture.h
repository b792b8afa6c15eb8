#pragma once

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/window/mainwindow.h"
#include "core/controllers/collection.h"
#include "core/controllers/metatypes.h"
#include "tests/support/database.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/settingssandbox.h"

#include <QAction>

#include <memory>

/**
 * The main window with settings and a folder of its own. Boxes are noted and answered by a function, file
 * dialogs by the next of the chosen paths. All goes with the object.
 */
class WindowFixture : private SettingsSandbox, private TestFolder
{
public:
    WindowFixture()
    {
        registerMetaTypes();
        answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Cancel, -1}; });
        FileDialogs::setResponder([this](const FileDialogs::Request &request) {
            m_requests.append(request);
            return m_choices.isEmpty() ? QStringList() : QStringList{m_choices.takeFirst()};
        });
        restart();
    }
    ~WindowFixture()
    {
        m_window.reset();
        Messages::setResponder({});
        FileDialogs::setResponder({});
    }
    WindowFixture(const WindowFixture &) = delete;
    WindowFixture &operator=(const WindowFixture &) = delete;

    MainWindow &window() { return *m_window; }
    /** Ends the window and makes a new one, as a restart of the program does. */
    void restart()
    {
        m_window.reset();
        m_window = std::make_unique<MainWindow>();
    }

    QString path(const QString &name) const { return filePath(name); }
    /** Makes an empty database in the folder. Its path. */
    QString makeDatabase(const QString &name)
    {
        const QString made = path("template"_s);
        if (!QFile::exists(made)) {
            const std::unique_ptr<Collection> maker(
                makeCollection(Constants::localDatabase, {}, made, {}, {}, 0));
            if (!maker->createDatabase())
                qFatal("no database can be made in %s", qPrintable(folder()));
        }
        QFile::remove(path(name));
        QFile::copy(made, path(name));
        return path(name);
    }
    /** Makes and opens a database. Its path. */
    QString openNew(const QString &name = "open.vrn"_s)
    {
        const QString made = makeDatabase(name);
        if (!m_window->openDatabase(DBDetails::local(made)))
            qFatal("%s cannot be opened", qPrintable(made));
        return made;
    }
    QString openPath() const
    {
        const Collection *collection = m_window->collection();
        return collection ? collection->databaseName() : QString();
    }

    using TestFolder::read;
    using TestFolder::write;

    void answerBoxes(const std::function<Messages::Answer(const Messages::Box &)> &answer)
    {
        Messages::setResponder([this, answer](const Messages::Box &box) {
            m_boxes.append(box.title + QLatin1String(": ") + box.text);
            return answer(box);
        });
    }
    /** The boxes since the last call, as "title: text". */
    QStringList takeBoxes()
    {
        QStringList boxes;
        boxes.swap(m_boxes);
        return boxes;
    }
    const QStringList &boxes() const { return m_boxes; }
    /** What the next file dialog answers. */
    void chooseFile(const QString &path) { m_choices.append(path); }
    const QList<FileDialogs::Request> &requests() const { return m_requests; }

    QAction *action(const QString &text) const { return findAction(m_window.get(), text); }
    /** The visible entries of the recent list. */
    QStringList recentTexts() const
    {
        QStringList texts;
        for (int i = 1; i <= 5; ++i) {
            const QAction *entry = recent(i);
            if (entry->isVisible())
                texts.append(entry->text());
        }
        return texts;
    }
    QAction *recent(int number) const
    {
        return m_window->findChild<QAction *>("recentDatabase%1"_s.arg(number));
    }

    /** Runs a body inside an event loop, as all code of the running program does. */
    static void inLoop(const std::function<void()> &body)
    {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&] {
            body();
            loop.quit();
        });
        loop.exec();
    }
    /** Lets all come that is on its way: queued signals, and timers without a time. */
    static void settle()
    {
        for (int round = 0; round < 5; ++round)
            QCoreApplication::processEvents();
    }
    /** A loop of its own for a while, as a box, a menu or a drag has it. */
    static void nestLoop(int milliseconds)
    {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

private:
    QStringList m_boxes;
    QStringList m_choices;
    QList<FileDialogs::Request> m_requests;
    std::unique_ptr<MainWindow> m_window;
};
