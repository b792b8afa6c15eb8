#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "net/updatehandler.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/dialogs/autolinkdialog.h"
#include "ui/dialogs/browsingtreedialog.h"
#include "ui/dialogs/databaseconnectdialog.h"
#include "ui/dialogs/databasecontentsselector.h"
#include "ui/dialogs/duplicateprompt.h"
#include "ui/dialogs/feedbackdialog.h"
#include "ui/dialogs/fileexportdialog.h"
#include "ui/dialogs/filelocationdialog.h"
#include "ui/dialogs/filemodificationdialog.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/dialogs/mergetagsdialog.h"
#include "ui/dialogs/multiplefileconflicthandler.h"
#include "ui/dialogs/preferencesdialog.h"
#include "ui/dialogs/progressdialog.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/dialogs/shellimportnotification.h"
#include "ui/dialogs/tagexportdialog.h"
#include "ui/dialogs/taggroupform.h"
#include "ui/dialogs/taggroupingdialog.h"
#include "ui/dialogs/tagremovaldialog.h"
#include "ui/preview/previewbox.h"
#include "ui/widgets/mnemonics.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>

namespace {

PresentableDuplicates foundDuplicates()
{
    const DuplicateFileInfo file{0, {}, "/a/b"_s, 1, QDateTime::currentDateTime()};
    PresentableDuplicates found;
    found.contentMatches = {{{file}, {file}, false}};
    found.nameMatches = found.contentMatches;
    return found;
}

using Maker = QWidget *(*)(WindowFixture &, UpdateHandler &);

const QMap<QString, Maker> &makers()
{
    static const QMap<QString, Maker> all{
        {"hyperlink"_s, [](auto &, auto &) -> QWidget * { return new AddHyperlinkDialog; }},
        {"auto link"_s, [](auto &, auto &) -> QWidget * { return new AutoLinkDialog("/a"_s, "a"_s); }},
        {"browsing trees"_s,
         [](auto &f, auto &) -> QWidget * {
             return new BrowsingTreeDialog(f.window().collection()->browsTreeController());
         }},
        {"server"_s, [](auto &, auto &) -> QWidget * { return new DatabaseConnectDialog({}); }},
        {"feedback"_s, [](auto &, auto &) -> QWidget * { return new FeedbackDialog; }},
        {"export"_s, [](auto &, auto &) -> QWidget * { return new FileExportDialog; }},
        {"tag export"_s, [](auto &, auto &) -> QWidget * { return new TagExportDialog; }},
        {"changed files"_s, [](auto &, auto &) -> QWidget * { return new FileModificationDialog; }},
        {"preferences"_s, [](auto &, auto &u) -> QWidget * { return new PreferencesDialog(&u); }},
        {"shell"_s, [](auto &, auto &) -> QWidget * { return new ShellImportNotification({}); }},
        {"groups"_s,
         [](auto &f, auto &) -> QWidget * {
             return new TagGroupingDialog(f.window().collection()->groupsController());
         }},
        {"groups of tags"_s,
         [](auto &f, auto &) -> QWidget * {
             return new TagGroupForm(f.window().collection()->groupsController(), {});
         }},
        {"merged tags"_s,
         [](auto &f, auto &) -> QWidget * {
             return new MergeTagsDialog(f.window().collection()->tagsController(), {1, 2});
         }},
        {"tag removal"_s,
         [](auto &f, auto &) -> QWidget * {
             return new TagRemovalDialog(f.window().collection()->mainViewController(), {});
         }},
        {"duplicates"_s,
         [](auto &f, auto &) -> QWidget * {
             return new DuplicatePrompt(foundDuplicates(), f.window().collection()->mainViewController());
         }},
        {"missing files"_s,
         [](auto &f, auto &) -> QWidget * {
             return new FileLocationDialog(f.window().collection()->mainViewController(), {1});
         }},
        {"conflicts"_s,
         [](auto &, auto &) -> QWidget * {
             return new MultipleFileConflictHandler("/a/"_s, {{1, "a"_s, "a-1"_s}, {2, "b"_s, "b-1"_s}});
         }},
        {"properties"_s,
         [](auto &, auto &) -> QWidget * { return new PropertiesDialog(File(FileRecord())); }},
        {"contents to import"_s,
         [](auto &, auto &) -> QWidget * { return new DatabaseContentsSelector("/a.vrn"_s, false); }},
        {"operation"_s, [](auto &, auto &) -> QWidget * { return new FileOperationProgress; }},
        {"locating"_s, [](auto &, auto &) -> QWidget * { return new ProgressDialog; }},
        {"manual"_s, [](auto &, auto &) -> QWidget * { return new HelpWindow(HelpWindow::Manual); }},
        {"previewer"_s,
         [](auto &f, auto &) -> QWidget * {
             MainViewController *files = f.window().collection()->mainViewController();
             return new PreviewBox(1, files->sorter(), files);
         }},
        {"box"_s,
         [](auto &, auto &) -> QWidget * {
             return new QMessageBox(QMessageBox::Question, "title"_s, "text"_s,
                                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
         }},
    };
    return all;
}

bool isControl(const QWidget *widget)
{
    return widget->focusPolicy() & Qt::TabFocus &&
           (qobject_cast<const QAbstractItemView *>(widget) ||
            qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
            qobject_cast<const QComboBox *>(widget) || qobject_cast<const QSlider *>(widget) ||
            qobject_cast<const QSpinBox *>(widget));
}

/** Controls that nothing names for those who do not see them. */
QStringList nameless(const QWidget *window)
{
    QStringList found;
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        QAccessibleInterface *face =
            isControl(widget) ? QAccessible::queryAccessibleInterface(widget) : nullptr;
        const bool isPart = qobject_cast<QSpinBox *>(widget->parentWidget()) ||
                            qobject_cast<QComboBox *>(widget->parentWidget());
        if (face && !isPart && face->text(QAccessible::Name).isEmpty())
            found.append(QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') +
                         widget->objectName());
    }
    return found;
}

} // namespace

/** The program without a pointer: letters of dialogs, names of controls, the way to the menus. */
class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void letters_data()
    {
        addColumns<QString, QString>("texts", "given");
        addRow("beginnings of words first", "Add|Add Files|Aid"_s, "&Add|Add &Files|A&id"_s);
        addRow("those that are named stay", "Save|&Send"_s, "S&ave|&Send"_s);
        addRow("but once", "&Open|&Other"_s, "&Open|O&ther"_s);
        addRow("a real ampersand is none", "a && b|&&"_s, "&a && b|&&"_s);
        addRow("letters run out", "a|a|A"_s, "&a|a|A"_s);
        addRow("no text", "|x"_s, "|&x"_s);
    }

    void letters()
    {
        QFETCH(QString, texts);
        QSet<QChar> taken;
        QTEST(Mnemonics::distribute(texts.split(QLatin1Char('|')), taken).join(QLatin1Char('|')), "given");
    }

    void dialogs_data()
    {
        QTest::addColumn<QString>("dialog");
        for (const QString &name : makers().keys())
            addRow(qPrintable(name), name);
    }

    void dialogs()
    {
        QFETCH(QString, dialog);
        WindowFixture fixture;
        fixture.openNew();
        UpdateHandler updates;
        const std::unique_ptr<QWidget> shown(makers().value(dialog)(fixture, updates));
        {
            const Mnemonics mnemonics(qApp);
            shown->show();
        }
        QMap<QChar, QString> letters;
        // Letters are for dialogs.
        const bool isDialog = !shown->inherits("QMainWindow");
        for (const auto *button : isDialog ? shown->findChildren<QPushButton *>() : QList<QPushButton *>()) {
            const QKeySequence key = QKeySequence::mnemonic(button->text());
            QVERIFY2(button->text().isEmpty() || !key.isEmpty(), qPrintable(button->text()));
            const QChar letter(key.isEmpty() ? 0 : key[0] & 0xffff);
            QVERIFY2(button->text().isEmpty() || !letters.contains(letter), qPrintable(button->text()));
            letters.insert(letter, button->text());
        }
        for (const auto *label : shown->findChildren<QLabel *>()) {
            const QKeySequence key = QKeySequence::mnemonic(label->text());
            if (!label->buddy() || key.isEmpty())
                continue;
            QVERIFY2(!letters.contains(QChar(key[0] & 0xffff)), qPrintable(label->text()));
        }
        QCOMPARE(nameless(shown.get()).join(QLatin1Char(',')), QString());
    }

    void mainWindow()
    {
        WindowFixture fixture;
        fixture.openNew();
        fixture.window().show();
        QVERIFY(QTest::qWaitForWindowActive(&fixture.window()));
        QCOMPARE(nameless(&fixture.window()).join(QLatin1Char(',')), QString());
        const QWidget *focus = QApplication::focusWidget();
        QTest::keyClick(&fixture.window(), Qt::Key_F10);
        QCOMPARE(QApplication::focusWidget(), focus);
        QMenuBar *menus = fixture.window().menuBar();
        QTRY_COMPARE(menus->activeAction(), menus->actions().constFirst());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        // Each key stands for one command.
        QMap<QKeySequence, const QAction *> keys;
        for (const QAction *action : fixture.window().findChildren<QAction *>()) {
            if (action->shortcut().isEmpty() || action->shortcutContext() == Qt::WidgetShortcut)
                continue;
            QVERIFY2(!keys.contains(action->shortcut()), qPrintable(action->shortcut().toString()));
            keys.insert(action->shortcut(), action);
        }
        QVERIFY(keys.size() >= 13);
    }
};

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
