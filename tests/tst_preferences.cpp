#include "app/settings/previewsettings.h"
#include "app/settings/viewsettings.h"
#include "app/window/updatebar.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "db/autolinks/autolinksync.h"
#include "db/manager/databasemanger.h"
#include "fileops/provider/thumbnailcache.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/trees/brtreesortermodel.h"
#include "net/updatehandler.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/filemodificationdialog.h"
#include "ui/dialogs/preferencesdialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>

namespace {

struct Row
{
    const char *group;
    const char *label;
    const char *key;
    QVariant fallback;
    QVariant other;
};

const QVector<Row> &rows()
{
    static const QVector<Row> all{
        {"External Files", "Advise when external file details are updated",
         "PreferencesDialog/adviseOfModifiedFiles", true, false},
        {"Duplicate Management For Adding Files", "Enable duplicate management",
         "PreferencesDialog/duplicateManagementEnabled", true, false},
        {"Duplicate Management For Adding Files",
         "List files which were not added because they were duplicates", "PreferencesDialog/listDuplicates",
         true, false},
        {"Duplicate Management For Adding Files", "Check for and present file name duplicates",
         "PreferencesDialog/checkForNameDuplicates", false, true},
        {"Misc", "Number of thumbnails to cache:", "ThumbnailCache/thumbnailCacheSize", 400, 100000},
        {"Misc", "Recent Files Timeout:", "NewFiles/timeout", 5, 10000},
        {"Automatic Tag Creation", "Enable auto-tag-creation from folders", "PreferencesDialog/autoTagging",
         true, false},
        {"Automatic Tag Creation", "Automatically create Browsing Nodes", "PreferencesDialog/createNodes",
         true, false},
        {"Automatic Tag Creation",
         "Limit auto-tagging to folder level:", "PreferencesDialog/autoTagRecursionLimitSet", false, true},
        {"Automatic Tag Creation", "", "PreferencesDialog/autoTagRecursionLimit", 4, 10000},
        {"Browsing Tree", "Ask for node to be added above or below drop point",
         "PreferencesDialog/nodeCreationOptions", false, true},
        {"Updates", "Check for updates", "PreferencesDialog/checkForUpdates", true, false},
        {"Updates", "Download updates automatically", "PreferencesDialog/autoUpdate", false, true},
        {"Image previewer", "Auto-save rotated images", "PreferencesDialog/autoSaveRotated", false, true},
        {"Image previewer", "Keep image window on top", "PreferencesDialog/keepPreviewOnTop", true, false},
        {"Image previewer", "Slideshow increment time:", "PreferencesDialog/slideshowIncrementTime", 7, 3600},
        {"Auto Linking", "Auto link files continuously", "PreferencesDialog/autoLinkContinuously", true,
         false},
        {"Auto Linking", "Auto link new files only when the corresponding browsing node is selected",
         "PreferencesDialog/autoLinkWhenSelected", false, true},
        {"Auto Linking", "Check for new files in all auto link folders each time Vorna is launched.",
         "PreferencesDialog/checkAutoLinkWhenLaunched", true, false},
        {"Auto Linking", "Auto link files in the background and do not display any messages.",
         "PreferencesDialog/autoLinkInBackGround", false, true},
        {"Browsing Tree", "Alphabetical Order", "PreferencesDialog/nodeSortingType", 1, 2}};
    return all;
}

/** A control as a person finds it: by the title of its group and by the text beside it. */
QWidget *control(const QWidget &dialog, const Row &row)
{
    for (const QGroupBox *group : dialog.findChildren<QGroupBox *>()) {
        if (group->title() != QLatin1String(row.group))
            continue;
        const QLatin1String text(row.label);
        if (text.isEmpty())
            return group->findChild<QSpinBox *>();
        for (QAbstractButton *button : group->findChildren<QAbstractButton *>()) {
            if (button->text() == text)
                return button;
        }
        for (const QLabel *label : group->findChildren<QLabel *>()) {
            if (label->text() == text)
                return label->buddy();
        }
    }
    return nullptr;
}

QVariant shown(const QWidget &dialog, const Row &row)
{
    QWidget *widget = control(dialog, row);
    if (const auto *spin = qobject_cast<QSpinBox *>(widget))
        return spin->value();
    const auto *button = qobject_cast<QAbstractButton *>(widget);
    if (qobject_cast<const QRadioButton *>(button))
        return button->isChecked() ? 2 : 1;
    return button ? button->isChecked() : QVariant();
}

/** Sets a control by the keyboard or the mouse, as far as it can be reached. */
void enter(const QWidget &dialog, const Row &row, const QVariant &value)
{
    QWidget *widget = control(dialog, row);
    if (auto *spin = qobject_cast<QSpinBox *>(widget)) {
        spin->selectAll();
        QTest::keyClicks(spin, value.toString());
    } else if (shown(dialog, row) != value) {
        Row clicked = row;
        if (qobject_cast<QRadioButton *>(widget))
            clicked.label = value == 2 ? "Alphabetical Order" : "Manual Order";
        qobject_cast<QAbstractButton *>(control(dialog, clicked))->click();
    }
}

const Row &rowOf(const char *key)
{
    return *std::find_if(rows().cbegin(), rows().cend(),
                         [key](const Row &row) { return QLatin1String(row.key) == QLatin1String(key); });
}

void press(QWidget &dialog, QDialogButtonBox::StandardButton button)
{
    dialog.findChild<QDialogButtonBox *>()->button(button)->click();
}

} // namespace

/** The dialog of the preferences, and what changes in the window by it. */
class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void everyRowIsShownAndStored()
    {
        QStringList known;
        for (const Row &row : rows())
            known.append(QLatin1String(row.key));
        known.sort();
        {
            PreferencesDialog dialog(&m_updates);
            QCOMPARE(dialog.windowTitle(), "Preferences"_s);
            QCOMPARE(dialog.objectName(), "PreferencesDialog"_s);
            for (const Row &row : rows()) {
                QVERIFY2(control(dialog, row), row.key);
                QVERIFY2(shown(dialog, row) == row.fallback, row.key);
            }
            const auto label = [&dialog](const QString &name) {
                return dialog.findChild<QLabel *>(name)->text();
            };
            QCOMPARE(label("newFilesUnit"_s) + QLatin1Char(' ') + label("slideshowUnit"_s),
                     "minutes seconds"_s);
            QCOMPARE(label("nodePlaceNote"_s),
                     "Note: Nodes can be inserted above the level of the drop-point "
                     "node by holding the Alt key when dragging."_s);
            // What is disabled cannot be clicked: the limit's switch comes first, those that others depend on
            // last.
            enter(dialog, rowOf("PreferencesDialog/autoTagRecursionLimitSet"), true);
            for (int i = rows().size() - 1; i >= 0; --i)
                enter(dialog, rows().at(i), rows().at(i).other);
            press(dialog, QDialogButtonBox::Ok);
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
        }
        for (const Row &row : rows())
            QVERIFY2(QSettings().value(QLatin1String(row.key)) == row.other, row.key);
        QStringList stored = preferenceKeys();
        QCOMPARE(stored, known);
        const PreferencesDialog again(&m_updates);
        for (const Row &row : rows())
            QVERIFY2(shown(again, row) == row.other, row.key);
        QVERIFY(!m_updates.findChild<QObject *>()); // nothing went over the network
    }

    void cancelWritesNothing()
    {
        {
            PreferencesDialog dialog(&m_updates);
            for (const Row &row : rows())
                enter(dialog, row, row.other);
            button(dialog, "Test"_s)->click();
            QCOMPARE(m_fixture->takeBoxes(),
                     QStringList{"Checked Connection: The update server could not be reached."_s});
            QVERIFY(button(dialog, "Test"_s)->isEnabled());
            press(dialog, QDialogButtonBox::Cancel);
        }
        QCOMPARE(preferenceKeys(), QStringList());
        QVERIFY(QSettings().contains("PreferencesDialog/geometry"_s));
    }

    void testTellsOfItsOwnCheckAlone()
    {
        PreferencesDialog dialog(&m_updates);
        m_updates.checkForUpdates();
        m_updates.checkConnection(); // of a dialog that is closed
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void dependentControlsFollow()
    {
        PreferencesDialog dialog(&m_updates);
        const auto isEnabled = [&dialog](const char *key) {
            return control(dialog, rowOf(key))->isEnabled();
        };
        enter(dialog, rowOf("PreferencesDialog/checkForNameDuplicates"), true);
        enter(dialog, rowOf("PreferencesDialog/duplicateManagementEnabled"), false);
        QVERIFY(!isEnabled("PreferencesDialog/listDuplicates"));
        QVERIFY(!isEnabled("PreferencesDialog/checkForNameDuplicates"));
        QVERIFY(!isEnabled("PreferencesDialog/autoTagRecursionLimit"));
        enter(dialog, rowOf("PreferencesDialog/autoTagRecursionLimitSet"), true);
        QVERIFY(isEnabled("PreferencesDialog/autoTagRecursionLimit"));
        enter(dialog, rowOf("PreferencesDialog/autoTagging"), false);
        for (const char *key : {"createNodes", "autoTagRecursionLimitSet", "autoTagRecursionLimit"})
            QVERIFY2(!isEnabled(qPrintable("PreferencesDialog/"_s + QLatin1String(key))), key);
        press(dialog, QDialogButtonBox::Ok);
        // What is disabled is written as it stands, and is disabled when the dialog opens.
        QCOMPARE(QSettings().value("PreferencesDialog/checkForNameDuplicates"_s), QVariant(true));
        QCOMPARE(QSettings().value("PreferencesDialog/autoTagRecursionLimitSet"_s), QVariant(true));
        const PreferencesDialog again(&m_updates);
        for (const char *key : {"listDuplicates", "checkForNameDuplicates", "createNodes",
                                "autoTagRecursionLimitSet", "autoTagRecursionLimit"}) {
            const Row &row = rowOf(qPrintable("PreferencesDialog/"_s + QLatin1String(key)));
            QVERIFY2(!control(again, row)->isEnabled(), key);
        }
    }

    void strangeValuesAreBrought_data()
    {
        addColumns<QVariant, QVariant>("stored", "boundary");
        addRow("below", QVariant(0), QVariant("lowest"_s));
        addRow("above", QVariant(2000000000), QVariant("highest"_s));
        addRow("another type", QVariant("many"_s), QVariant());
    }

    void strangeValuesAreBrought()
    {
        QFETCH(QVariant, stored);
        QFETCH(QVariant, boundary);
        for (const Row &row : rows())
            QSettings().setValue(QLatin1String(row.key), stored);
        const PreferencesDialog dialog(&m_updates);
        for (const Row &row : rows()) {
            const auto *spin = qobject_cast<QSpinBox *>(control(dialog, row));
            if (!spin)
                continue;
            QCOMPARE(spin->minimum(), 1);
            QCOMPARE(QVariant(spin->maximum()), row.other);
            const int expected =
                boundary.isNull() ? row.fallback.toInt() : (boundary == "lowest"_s ? 1 : spin->maximum());
            QCOMPARE(spin->value(), expected);
        }
        // What is shown is what holds already, but for the limit, for which the dialog has a value of its
        // own.
        const auto shownAs = [&dialog](const char *key) { return shown(dialog, rowOf(key)).toInt(); };
        QCOMPARE(uint(shownAs("NewFiles/timeout")) * 60, ViewSettings::newFilesTimeout());
        QCOMPARE(shownAs("ThumbnailCache/thumbnailCacheSize"), ViewSettings::thumbnailCacheSize());
        QCOMPARE(shownAs("PreferencesDialog/slideshowIncrementTime"),
                 PreviewSettings::slideshowIncrementTime());
        // One of the two is chosen whatever is stored.
        QCOMPARE(shown(dialog, rowOf("PreferencesDialog/nodeSortingType")), QVariant(1));
    }

    void nothingIsTakenOverWhenItCannotBeStored()
    {
        QSettings().setValue("PreferencesDialog/autoTagging"_s, true);
        QSettings().sync();
        const QString path = QSettings().fileName();
        QVERIFY(QFile::remove(path) && QDir().mkdir(path));
        {
            PreferencesDialog dialog(&m_updates);
            enter(dialog, rowOf("NewFiles/timeout"), 77);
            dialog.show();
            press(dialog, QDialogButtonBox::Ok);
            QCOMPARE(m_fixture->takeBoxes(),
                     QStringList{"Preferences: The preferences could not be stored."_s});
            QVERIFY(dialog.isVisible());
            QCOMPARE(shown(dialog, rowOf("NewFiles/timeout")), QVariant(77));
            QCOMPARE(ViewSettings::newFilesTimeout(), 300U);
            QVERIFY(QDir().rmdir(path));
            press(dialog, QDialogButtonBox::Ok);
            QVERIFY(!dialog.isVisible());
        }
        QCOMPARE(ViewSettings::newFilesTimeout(), 77U * 60);
    }

    void fitsASmallScreenWithLargeLetters()
    {
        QFont large = QApplication::font();
        large.setPointSize(18);
        PreferencesDialog dialog(&m_updates);
        dialog.setFont(large);
        dialog.resize(700, 540);
        dialog.show();
        QCOMPARE(dialog.size(), QSize(700, 540));
        auto *tabs = dialog.findChild<QTabWidget *>();
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            QCoreApplication::processEvents();
            auto *page = qobject_cast<QScrollArea *>(tabs->widget(i));
            QVERIFY(page && page->isVisible());
            // Down, nothing is out of reach; to the side, nothing is to be looked for.
            QCOMPARE(page->horizontalScrollBar()->maximum(), 0);
            for (const QWidget *part : page->widget()->findChildren<QWidget *>()) {
                const int needed = part->hasHeightForWidth() ? part->heightForWidth(part->width()) : 0;
                QVERIFY2(part->height() >= needed, qPrintable(part->objectName()));
            }
        }
    }

    void changesTheOrderOfNodesAtOnce()
    {
        m_fixture->openNew();
        const BrowsTreeController *tree = m_fixture->window().collection()->browsTreeController();
        QVERIFY(tree->allowsManualMoves());
        runPreferences({{"PreferencesDialog/nodeSortingType", 2}});
        QCOMPARE(tree->sorterModel()->sortMode(), int(ViewSettings::AlphabeticalSorting));
        QVERIFY(!tree->allowsManualMoves());
        runPreferences({{"PreferencesDialog/nodeSortingType", 1}});
        QVERIFY(tree->allowsManualMoves());
    }

    void changesWhatCountsAsRecentAtOnce()
    {
        const QString path = m_fixture->makeDatabase("recent.vrn"_s);
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        for (const int minutes : {1, 30})
            OtherConnection(path).run(
                "INSERT INTO files VALUES(%1,'f%1','',0,%2,0,'c%1',1,0,0,0,2)"_s.arg(minutes).arg(
                    now - 60 * minutes));
        QVERIFY(m_fixture->window().openDatabase(DBDetails::local(path)));
        MainViewController *files = m_fixture->window().collection()->mainViewController();
        files->showSpecialNode(RecentlyAddedFiles);
        QCOMPARE(files->shownFileIds(), QVector<qint64>{1});
        runPreferences({{"NewFiles/timeout", 60}});
        QCOMPARE(files->shownFileIds(), (QVector<qint64>{1, 30}));
        // Nothing else is selected by that.
        files->showSpecialNode(AllInternalFiles);
        runPreferences({{"NewFiles/timeout", 5}});
        QCOMPARE(files->filterModel()->nodeType(), AllInternalFiles);
    }

    void changesTheNumberOfKeptThumbnailsAtOnce()
    {
        m_fixture->openNew();
        auto *cache = m_fixture->window().collection()->findChild<DatabaseManger *>()->thumbnailCache();
        const auto held = [cache] {
            int count = 0;
            for (qint64 id = 1; id <= 10; ++id)
                count += cache->contains(id);
            return count;
        };
        for (qint64 id = 1; id <= 10; ++id)
            cache->onThumbnailLoaded(id, new QImage(1, 1, QImage::Format_ARGB32));
        QCOMPARE(held(), 10);
        runPreferences({{"ThumbnailCache/thumbnailCacheSize", 3}});
        QCOMPARE(held(), 3);
    }

    void smallCacheHoldsAllThatIsSeen()
    {
        m_fixture->openNew();
        m_fixture->window().resize(1260, 740);
        m_fixture->window().show();
        runPreferences({{"ThumbnailCache/thumbnailCacheSize", 1}});
        MainViewController *files = m_fixture->window().collection()->mainViewController();
        QList<QUrl> urls;
        QImage picture(8, 8, QImage::Format_RGB32);
        for (int i = 0; i < 4; ++i) {
            picture.fill(i);
            const QString path = m_fixture->path("%1.png"_s.arg(i));
            QVERIFY(picture.save(path));
            urls.append(QUrl::fromLocalFile(path));
        }
        files->addUrls(urls);
        QTRY_COMPARE(files->contentsModel()->rowCount(), 4);
        const auto *cache = m_fixture->window().collection()->findChild<DatabaseManger *>()->thumbnailCache();
        QSignalSpy loaded(cache, &ThumbnailCache::imageLoaded);
        files->showSpecialNode(AllFiles);
        QTRY_COMPARE(loaded.count(), 4);
        m_fixture->window().grab();
        for (const qint64 id : files->shownFileIds())
            QVERIFY(cache->contains(id));
        QCOMPARE(loaded.count(), 4);
    }

    void linksFoldersAtOnce_data()
    {
        addColumns<QByteArray>("key");
        addRow("continuously", QByteArray("autoLinkContinuously"));
        addRow("when its node is selected", QByteArray("autoLinkWhenSelected"));
        addRow("when the program starts", QByteArray("checkAutoLinkWhenLaunched"));
    }

    void linksFoldersAtOnce()
    {
        QFETCH(QByteArray, key);
        for (const char *each : {"autoLinkContinuously", "autoLinkWhenSelected", "checkAutoLinkWhenLaunched"})
            QSettings().setValue("PreferencesDialog/"_s + QLatin1String(each), false);
        const QString path = m_fixture->openNew();
        const Collection *collection = m_fixture->window().collection();
        auto *manager = collection->findChild<DatabaseManger *>();
        auto *sync = manager->findChild<AutoLinkSync *>();
        sync->setTimes(0, 30000);
        const qint64 tag = manager->addTag("linked"_s);
        const qint64 node = manager->addNodeBelow(tag, 0);
        QSignalSpy rounds(sync, &AutoLinkSync::roundDone);
        QVERIFY(QDir().mkdir(m_fixture->path("in"_s)));
        collection->browsTreeController()->links().link(node, m_fixture->path("in"_s));
        QTRY_COMPARE(rounds.count(), 1);
        runPreferences({{("PreferencesDialog/" + key).constData(), true}});
        m_fixture->write("in/a.txt"_s, "a");
        if (key == "autoLinkWhenSelected")
            collection->browsTreeController()->nodeActivated(TagNode, node, {tag}, {});
        if (key == "checkAutoLinkWhenLaunched") {
            m_fixture->window().closeDatabase();
            QVERIFY(m_fixture->window().openDatabase(DBDetails::local(path)));
            manager = m_fixture->window().collection()->findChild<DatabaseManger *>();
        }
        QTRY_COMPARE(manager->files().size(), 1);
        QTRY_VERIFY(!manager->isBusy());
    }

    void advisesOfModifiedFilesAtOnce()
    {
        m_fixture->openNew();
        const Collection *collection = m_fixture->window().collection();
        auto *manager = collection->findChild<DatabaseManger *>();
        m_fixture->write("a.txt"_s, "");
        collection->mainViewController()->addUrls({QUrl::fromLocalFile(m_fixture->path("a.txt"_s))});
        QTRY_COMPARE(manager->files().size(), 1);
        const auto isTold = [] {
            const QWidgetList windows = QApplication::topLevelWidgets();
            return std::any_of(windows.cbegin(), windows.cend(), [](QWidget *window) {
                return qobject_cast<FileModificationDialog *>(window) && window->isVisible();
            });
        };
        QByteArray contents;
        for (const bool advises : {false, true}) {
            runPreferences({{"PreferencesDialog/adviseOfModifiedFiles", advises}});
            m_fixture->write("a.txt"_s, contents += "more");
            collection->mainViewController()->showSpecialNode(advises ? AllFiles : AllExternalFiles);
            QTRY_COMPARE(manager->files().begin().value()->size(), contents.size());
            QTRY_COMPARE(isTold(), advises);
        }
    }

    void looksForUpdatesOnceThatIsSwitchedOn()
    {
        m_fixture->openNew();
        const auto *handler = m_fixture->window().findChild<UpdateHandler *>();
        QSignalSpy checked(handler, &UpdateHandler::checkingSucceeded);
        runPreferences({{"PreferencesDialog/checkForUpdates", false}});
        QCOMPARE(checked.count(), 0);
        runPreferences({{"PreferencesDialog/checkForUpdates", true}});
        QCOMPARE(checked.count(), 1);
        runPreferences({{"PreferencesDialog/checkForUpdates", true}});
        QCOMPARE(checked.count(), 1);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

private:
    static QAbstractButton *button(const QWidget &dialog, const QString &text)
    {
        for (QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }
    /** What is stored by the dialog, but for its place on the screen. */
    static QStringList preferenceKeys()
    {
        const QStringList foreign{"lastVersion"_s, "MainWindow/"_s, "/geometry"_s, "View/"_s};
        QStringList keys;
        for (const QString &key : QSettings().allKeys()) {
            const bool isForeign = std::any_of(foreign.cbegin(), foreign.cend(),
                                               [&key](const QString &part) { return key.contains(part); });
            if (!isForeign)
                keys.append(key);
        }
        return keys;
    }
    /** Opens the dialog by its command, enters values and accepts. */
    void runPreferences(const QVector<QPair<const char *, QVariant>> &values)
    {
        bool isRun = false;
        QTimer::singleShot(0, this, [&] {
            auto *dialog = qobject_cast<PreferencesDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            for (const auto &value : values)
                enter(*dialog, rowOf(value.first), value.second);
            press(*dialog, QDialogButtonBox::Ok);
            isRun = true;
        });
        m_fixture->action("Preferences"_s)->trigger();
        QVERIFY(isRun);
    }

    UpdateHandler m_updates;
    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestPreferences)
#include "tst_preferences.moc"
