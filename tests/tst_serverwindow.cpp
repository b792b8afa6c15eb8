#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "models/contents/contentsmodel.h"
#include "models/trees/browsingtreetablemodel.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/browsingtreedialog.h"
#include "ui/dialogs/databaseconnectdialog.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/tbtreeview.h"
#include "ui/widgets/browsingtreesdelegate.h"
#include "ui/widgets/tableview.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDockWidget>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTcpServer>

namespace {
const QString invalid = "Invalid database details: Provided database details were invalid."_s;
const QString failed = "Failed to Connect to Database: Connection could not be made to the specified remote "
                       "database."_s;
const QString treeError = "Browsing tree error: "_s;
const QString deletion = "Delete browsing tree: "_s;
} // namespace

/** The main window with a database on a server: the dialogs of connections and of browsing trees. */
class TestServerWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { connect(&m_timer, &QTimer::timeout, this, &TestServerWindow::runStep); }
    void init()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        m_steps.clear();
        m_fixture = std::make_unique<WindowFixture>();
        m_server = std::make_unique<ServerDatabase>();
        m_details = m_server->details();
    }
    void cleanup()
    {
        QCOMPARE(m_steps.size(), 0);
        m_fixture.reset();
        m_server.reset();
    }

    void detailsAreChecked()
    {
        const QString good = " host | 5432 |db|anna| p "_s;
        for (const QString &typed :
             {good, "  |5432|db|anna|"_s, "host||db|anna|"_s, "host|0|db|anna|"_s, "host|65536|db|anna|"_s,
              "host|54e2|db|anna|"_s, "host|5432||anna|"_s, "host|5432|db| |"_s}) {
            DatabaseConnectDialog dialog(DBDetails(2, {}, 5432, {}, {}, {}));
            fill(dialog, typed.split(QLatin1Char('|')));
            dialog.accept();
            QVERIFY2((dialog.result() == QDialog::Accepted) == (typed == good), qPrintable(typed));
            QCOMPARE(m_fixture->takeBoxes(), typed == good ? QStringList() : QStringList{invalid});
            if (typed == good) {
                QCOMPARE(dialog.details(), DBDetails(2, "host"_s, 5432, "db"_s, "anna"_s, {}));
                QCOMPARE(DatabaseConnectDialog(dialog.details()).details().password(), " p "_s);
                QCOMPARE(dialog.findChildren<QLineEdit *>().last()->echoMode(), QLineEdit::Password);
            }
        }
    }

    void connectsByDialog()
    {
        const QString path = m_fixture->openNew();
        QAction *disconnect = m_fixture->action("Disconnect"_s);
        QVERIFY(disconnect->isEnabled() && !treeCommandsShown());
        const auto typed = [this](const QString &database) {
            return QStringList{m_details.host(), QString::number(m_details.port()), database,
                               m_details.user(), "s3cret"_s};
        };
        QString reason;
        m_fixture->answerBoxes([&reason](const Messages::Box &box) {
            reason = box.informativeText;
            return Messages::Answer{};
        });
        // Nothing is there by that name: the open database stays, and so does what was typed.
        step<DatabaseConnectDialog>([&](auto &dialog) {
            QCOMPARE(values(dialog), QStringList({""_s, "5432"_s, ""_s, ""_s, ""_s}));
            fill(dialog, typed("nothing"_s));
            dialog.accept();
        });
        step<DatabaseConnectDialog>([&](auto &dialog) {
            QCOMPARE(m_fixture->takeBoxes(), QStringList{failed});
            QVERIFY(reason.contains("\"nothing\""_s));
            QCOMPARE(m_fixture->openPath(), path);
            QVERIFY(!QGuiApplication::overrideCursor());
            QCOMPARE(values(dialog), typed("nothing"_s));
            fill(dialog, typed(m_details.databaseName()));
            dialog.accept();
        });
        m_fixture->action("Connect"_s)->trigger();
        const QString name =
            "%1:%2, %3"_s.arg(m_details.host(), QString::number(m_details.port()), m_details.databaseName());
        QCOMPARE(window().windowTitle(), "Vorna - "_s + name);
        QCOMPARE(m_fixture->recentTexts(), QStringList({"1 "_s + name, "2 "_s + path}));
        QVERIFY(treeCommandsShown());

        QVERIFY(QSqlDatabase::connectionNames().filter("trial"_s).isEmpty());

        // In this run it is opened again without a word.
        disconnect->trigger();
        QVERIFY(!window().collection() && !disconnect->isEnabled() && !treeCommandsShown());
        m_fixture->recent(1)->trigger();
        QVERIFY(window().collection());
        QCOMPARE(window().collection()->password(), "s3cret"_s);
        m_fixture->restart();
        QVERIFY(!WindowFixture::read(QSettings().fileName()).contains("s3cret"));
        window().openStartupDatabase({});
        QVERIFY(!window().collection());
        step<DatabaseConnectDialog>([&](auto &dialog) {
            QCOMPARE(values(dialog), typed(m_details.databaseName()).mid(0, 4) << ""_s);
        });
        m_fixture->recent(1)->trigger();
        QVERIFY(!window().collection());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void waitingForAServerCanEnd()
    {
        QTcpServer deaf;
        QVERIFY(deaf.listen(QHostAddress::LocalHost));
        step<DatabaseConnectDialog>([&](auto &dialog) {
            fill(dialog, {"127.0.0.1"_s, QString::number(deaf.serverPort()), "db"_s, "anna"_s, ""_s});
            dialog.accept();
        });
        step<QProgressDialog>([](auto &dialog) { dialog.cancel(); });
        step<DatabaseConnectDialog>([&](auto &dialog) { QCOMPARE(values(dialog).at(3), "anna"_s); });
        m_fixture->action("Connect"_s)->trigger();
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void treesByDialog()
    {
        QVERIFY(window().openDatabase(m_details));
        const DialogAnswers answers({"Anna's"_s, "Default"_s});
        m_fixture->answerBoxes([](const Messages::Box &box) {
            const bool isQuestion = box.buttons & QMessageBox::Cancel;
            return Messages::Answer{isQuestion ? QMessageBox::Ok : QMessageBox::NoButton, -1};
        });
        inTreeDialog("Select Browsing Tree"_s, [this](QDialog &dialog, TableView &table) {
            const QAbstractItemModelTester tester(table.model());
            button(dialog, "createTreeButton")->click();
            QTRY_COMPARE(rows(table), "Default*|Anna's"_s);
            QTRY_COMPARE(table.currentIndex().row(), 1);
            button(dialog, "createTreeButton")->click();
            QCOMPARE(m_fixture->takeBoxes(),
                     QStringList{"Tag already exists: There is already a tag with this name."_s});
            rename(table, 1, "Default"_s);
            QCOMPARE(awaitBoxes(),
                     QStringList{treeError + "There is already a browsing tree with this name."_s});
            rename(table, 1, "  "_s);
            rename(table, 1, " <b>Ben's & \"%1\" "_s);
            QCOMPARE(rows(table), "Default*|<b>Ben's & \"%1\""_s);
            buttonAt(table, 1)->click();
            QCOMPARE(rows(table), "Default|<b>Ben's & \"%1\"*"_s);
            QVERIFY(buttonAt(table, 1)->isChecked() && !buttonAt(table, 0)->isChecked());
            QVERIFY(buttonAt(table, 1)->toolTip().contains("&lt;b&gt;Ben"_s)); // not taken for markup
            table.selectRow(0);
            button(dialog, "deleteTreeButton")->click();
            QCOMPARE(m_fixture->takeBoxes(),
                     QStringList{deletion + "Default browsing tree can not be deleted."_s});
        });
        auto *dock = window().findChild<QDockWidget *>("BrowsingTreeDock"_s);
        QCOMPARE(dock->windowTitle(), "Browsing Tree: <b>Ben's && \"%1\""_s);
        QCOMPARE(window().collection()->settings()->browsingTree(), qint64(2));
        inTreeDialog("Browsing Tree List"_s, [this](QDialog &dialog, TableView &table) {
            // What another client has made is taken in on the way.
            QVERIFY(m_server->owner().run("INSERT INTO browsing_trees VALUES (9,'other')"_s));
            QTRY_COMPARE(table.currentIndex().row(), 1);
            button(dialog, "deleteTreeButton")->click();
            QCOMPARE(
                m_fixture->takeBoxes(),
                QStringList{deletion + "The following Browsing Tree will be deleted: <b>Ben's & \"%1\"."_s});
            QTRY_COMPARE(rows(table), "Default*|other"_s);
        });
        QCOMPARE(dock->windowTitle(), "Browsing Tree: Default"_s);
        QCOMPARE(m_server->count("browsing_trees"_s), 2);
    }

    /** What others do comes in beside what somebody looks at, selects and types. */
    void placeAndTextStay_data()
    {
        addColumns<QString, QString>("statement", "told");
        addRow("others",
               "INSERT INTO tags VALUES (70,'a theirs','',0,NULL); UPDATE tags SET tag_name='z' WHERE "
               "tag_id=2; INSERT INTO files SELECT i,'0'||i,'',0,0,0,'d'||i,1,0,0,0,2 FROM "
               "generate_series(300,309) i; INSERT INTO tb_nodes VALUES (70,3,1,0); "
               "INSERT INTO tb_node_links VALUES (1,70)"_s,
               "2 tags, 1 node, 10 files changed by others"_s);
        addRow("the tag itself", "UPDATE tags SET tag_name='theirs' WHERE tag_id=1"_s,
               "1 tag changed by others"_s);
    }

    void placeAndTextStay()
    {
        QFETCH(QString, statement);
        QVERIFY(
            m_server->owner().run("INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM generate_series(1,9) "
                                  "i; INSERT INTO files SELECT "
                                  "i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM generate_series(1,200) i; "
                                  "INSERT INTO tb_nodes SELECT i,i,1,0 FROM generate_series(1,2) i; "
                                  "INSERT INTO tb_node_links VALUES (0,1), (1,2)"_s));
        QVERIFY(window().openDatabase(m_details));
        window().show();
        auto *tree = window().findChild<TBtreeView *>();
        const QPersistentModelIndex node = tree->model()
                                               ->match(tree->model()->index(0, 0), Qt::DisplayRole, "tag 1"_s,
                                                       1, Qt::MatchStartsWith | Qt::MatchRecursive)
                                               .value(0);
        QVERIFY(node.isValid());
        tree->expand(node);
        window().collection()->mainViewController()->showSpecialNode(AllFiles);
        QAbstractItemView *files = nullptr;
        for (auto *view : window().findChild<MainFilesView *>()->findChildren<QAbstractItemView *>())
            files = view->isVisible() && view->model() && view->model()->rowCount() == 200 ? view : files;
        QVERIFY(files);
        files->setCurrentIndex(files->model()->index(199, ContentsModel::NameColumn));
        const QString selected = files->currentIndex().data().toString();
        files->model()->sort(ContentsModel::NameColumn);
        files->scrollTo(files->model()->index(100, ContentsModel::NameColumn),
                        QAbstractItemView::PositionAtTop);
        const auto firstShown = [files] {
            return files->indexAt({12, 12}).siblingAtColumn(ContentsModel::NameColumn).data().toString();
        };
        const QString first = firstShown();
        QVERIFY(first != files->model()->index(0, ContentsModel::NameColumn).data().toString());
        auto *tags = window().findChild<TagsTableDock *>()->findChild<TableView *>();
        for (int row = 0; row < tags->model()->rowCount(); ++row) {
            if (tags->model()->index(row, 0).data().toString() == "tag 1"_s)
                tags->edit(tags->model()->index(row, 0));
        }
        const QPointer<QLineEdit> editor = tags->findChild<QLineEdit *>();
        QVERIFY(editor);
        editor->clear();
        QTest::keyClicks(editor, "typed"_s);

        QVERIFY(m_server->owner().run(statement));
        const auto isTold = [this] {
            QFETCH(QString, told);
            return window().statusBar()->currentMessage() == told;
        };
        QTRY_VERIFY(isTold());
        QVERIFY(editor && editor->isVisible());
        QCOMPARE(editor->text(), "typed"_s);
        QCOMPARE(files->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(files->currentIndex().data().toString(), selected);
        QCOMPARE(firstShown(), first);
        QVERIFY(node.isValid() && tree->isExpanded(node));
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void treesThatOthersRemove()
    {
        QVERIFY(window().openDatabase(m_details));
        BrowsTreeController *trees = window().collection()->browsTreeController();
        QVERIFY(trees->addTree("two"_s) && trees->addTree("three"_s) && trees->selectTree(2));
        QVERIFY(m_server->owner().run("DELETE FROM browsing_trees WHERE tree_id=2"_s));
        inTreeDialog("Browsing Tree List"_s, [this](QDialog &, TableView &table) {
            QCOMPARE(awaitBoxes(),
                     QStringList{treeError + "Previous browsing tree does not exists anymore. \n"
                                             "Selected default browsing tree."_s});
            QCOMPARE(rows(table), "Default*|three"_s);
            QVERIFY(m_server->owner().run("DELETE FROM browsing_trees WHERE tree_id=3"_s));
            buttonAt(table, 1)->click();
            QCOMPARE(awaitBoxes(), QStringList{treeError + "Selected browsing tree no longer exists."_s});
            QCOMPARE(rows(table), "Default*"_s);
        });
    }

    void readerOnlySelectsUntilServerIsLost()
    {
        QVERIFY(m_server->owner().run("INSERT INTO browsing_trees(tree_name) VALUES('two')"_s));
        QVERIFY(window().openDatabase(m_server->readerDetails()));
        inTreeDialog("Select Browsing Tree"_s, [this](QDialog &dialog, TableView &table) {
            for (const char *name : {"createTreeButton", "deleteTreeButton"})
                QVERIFY(!button(dialog, name)->isEnabled());
            QVERIFY(!(table.model()->index(1, 0).flags() & Qt::ItemIsEditable));
            QTest::keyClick(&table, Qt::Key_Down);
            QTest::keyClick(&table, Qt::Key_Space);
            QCOMPARE(rows(table), "Default|two*"_s);
            // Without its server there is nothing to choose from.
            emit window().collection()->connectionError();
            QTRY_VERIFY(!dialog.isVisible());
        });
        QTRY_VERIFY(!window().collection());
        m_fixture->recent(1)->trigger();
        QVERIFY(window().collection());
    }

private:
    MainWindow &window() { return m_fixture->window(); }
    /** For those that leave from the event loop. */
    QStringList awaitBoxes()
    {
        const bool isTold = QTest::qWaitFor([this] { return !m_fixture->boxes().isEmpty(); });
        return isTold ? m_fixture->takeBoxes() : QStringList();
    }
    bool treeCommandsShown() const { return m_fixture->action("Select Browsing Tree"_s)->isVisible(); }

    /** What is done in the next dialog of a kind, which is closed then. */
    template <class Dialog, class Body>
    void step(Body body)
    {
        m_steps.append([this, body] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return false;
            m_timer.stop();
            body(*dialog);
            m_timer.start();
            if (dialog->isVisible())
                dialog->reject();
            return true;
        });
        m_timer.start(5);
    }
    template <class Body>
    void inTreeDialog(const QString &action, Body body)
    {
        step<BrowsingTreeDialog>([body](QDialog &dialog) { body(dialog, *dialog.findChild<TableView *>()); });
        m_fixture->action(action)->trigger();
    }
    void runStep()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog && m_steps.isEmpty())
            dialog->reject(); // nobody has expected it
        else if (dialog && m_steps.first()())
            m_steps.removeFirst();
    }

    /** Host, port, database, user, password. */
    static void fill(const QWidget &dialog, const QStringList &values)
    {
        for (int i = 0; i < values.size(); ++i)
            dialog.findChildren<QLineEdit *>().at(i)->setText(values.at(i));
    }
    static QStringList values(const QWidget &dialog)
    {
        QStringList texts;
        for (const QLineEdit *edit : dialog.findChildren<QLineEdit *>())
            texts << edit->text();
        return texts;
    }
    static QPushButton *button(const QWidget &dialog, const char *name)
    {
        return dialog.findChild<QPushButton *>(QLatin1String(name));
    }
    /** The names, with a star at the tree that is shown. */
    static QString rows(const TableView &table)
    {
        QStringList texts;
        for (int row = 0; row < table.model()->rowCount(); ++row) {
            const QModelIndex select = table.model()->index(row, BrowsingTreeTableModel::SelectColumn);
            texts << select.siblingAtColumn(0).data().toString() +
                         (select.data(Qt::CheckStateRole) == Qt::Checked ? "*"_s : ""_s);
        }
        return texts.join(QLatin1Char('|'));
    }
    static QRadioButton *buttonAt(const TableView &table, int row)
    {
        auto *button = qobject_cast<QRadioButton *>(
            table.indexWidget(table.model()->index(row, BrowsingTreeTableModel::SelectColumn)));
        return button && button->property(BrowsingTreesDelegate::indexProperty) == row ? button : nullptr;
    }
    /** By an editor, as a person does. */
    static void rename(TableView &table, int row, const QString &name)
    {
        const QModelIndex index = table.model()->index(row, BrowsingTreeTableModel::NameColumn);
        table.edit(index);
        auto *editor = qobject_cast<QLineEdit *>(table.indexWidget(index));
        editor->setText(name);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!table.isEditing());
    }

    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<ServerDatabase> m_server;
    DBDetails m_details;
    QList<std::function<bool()>> m_steps;
    QTimer m_timer;
};

QTEST_MAIN(TestServerWindow)
#include "tst_serverwindow.moc"
