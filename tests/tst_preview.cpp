#include "fileops/pictures/imageloading.h"
#include "fileops/pictures/picturepool.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/previewtest.h"
#include "ui/preview/navigationbar.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

/** The previewer on a real database: its way through the view, turning and saving, texts and keys. */
class TestPreview : public PreviewTest
{
    Q_OBJECT

private slots:
    void init() { openDatabase(); }
    void cleanup() { closeDatabase(); }

    void takesOverPreferencesAtOnce()
    {
        LocalCollection::set("PreferencesDialog/keepPreviewOnTop", false);
        PreviewBox *box = open(addPicture("a.png"_s));
        const auto staysOnTop = [box] { return box->windowFlags().testFlag(Qt::WindowStaysOnTopHint); };
        QVERIFY(!staysOnTop());
        box->move(70, 50);
        const QRect place = box->geometry();
        LocalCollection::set("PreferencesDialog/keepPreviewOnTop", true);
        m_previews->readSettings();
        QVERIFY(staysOnTop() && box->isVisible());
        QCOMPARE(box->geometry(), place);

        // What was turned is saved or offered as it is wanted now.
        turn(box, "r"_s);
        QTRY_VERIFY(offersSaving(box));
        LocalCollection::set("PreferencesDialog/autoSaveRotated", true);
        m_previews->readSettings();
        QTRY_VERIFY(!offersSaving(box));
        QSignalSpy changed(box, &PreviewBox::changedThumbnail);
        QVERIFY(box->saveWaiting());
        QCOMPARE(changed.count(), 1);
    }

    void walksTheRowsOfTheView()
    {
        const qint64 c = addPicture("c.png"_s);
        const qint64 a = addPicture("a.png"_s);
        m_fixture->addExternal("b.txt"_s);
        const qint64 b = addPicture("b.png"_s);
        PreviewBox *box = open(a, ContentsOrder);
        QCOMPARE(box->windowTitle(), "a.png - 1 of 3"_s);
        QCOMPARE(walked(box, "< > > > <"_s), (QVector<qint64>{c, a, b, c, b}));

        // In another order, and round the file on show when it is not in the view any more.
        m_fixture->mainView().sorter()->sort(1, Qt::DescendingOrder);
        QCOMPARE(walked(box, ">"_s), QVector<qint64>{a});
        m_fixture->mainView().setFileFilterString("c.png"_s);
        QCOMPARE(walked(box, "> >"_s), (QVector<qint64>{c, c}));
        m_fixture->mainView().setFileFilterString(QString());
        QCOMPARE(walked(box, ">"_s), QVector<qint64>{b});
        m_fixture->mainView().deleteFiles({b});
        m_fixture->waitForWorker();
        QCOMPARE(walked(box, ">"_s), QVector<qint64>{a});
        m_fixture->mainView().deleteFiles({a, c});
        m_fixture->waitForWorker();
        QCOMPARE(walked(box, "< >"_s), (QVector<qint64>{a, a}));
    }

    void savesWhatWasTurned_data()
    {
        addColumns<bool, QString, QString>("isInternal", "turns", "end");
        for (const char *end : {"Save changes", "walk", "close", "show", "database", "loss"}) {
            addRow(qPrintable("internal, "_s + QLatin1String(end)), true, "r"_s, QString::fromUtf8(end));
            addRow(qPrintable("external, "_s + QLatin1String(end)), false, "lll"_s, QString::fromUtf8(end));
        }
    }

    void savesWhatWasTurned()
    {
        QFETCH(bool, isInternal);
        QFETCH(QString, end);
        QFETCH(QString, turns);
        const qint64 id = addPicture("a.png"_s, isInternal);
        addPicture("b.png"_s);
        LocalCollection::set("PreferencesDialog/autoSaveRotated", end != "Save changes"_s);
        const QPointer<PreviewBox> box = open(id);
        QSignalSpy changed(box, &PreviewBox::changedThumbnail);
        turn(box, turns);
        QTRY_COMPARE(offersSaving(box), end == "Save changes"_s);
        if (end != "loss"_s) {
            // At first while somebody else writes: what was turned stays, and can be saved or cancelled.
            OtherConnection other(m_fixture->path());
            QVERIFY(other.run("BEGIN IMMEDIATE"_s));
            QSignalSpy warned(m_fixture->get(), &Collection::showTempWarning);
            leave(box, end);
            QCOMPARE(warned.count(), 1);
            QTRY_VERIFY(box && buttons(box)->isEnabled() && offersSaving(box));
            QVERIFY(box->isVisible() && !box->isFullScreen() && box->fileId() == id);
            QCOMPARE(preview(box)->pictureSize(), picture().size().transposed());
            QVERIFY(other.run("ROLLBACK"_s));
        }
        QCOMPARE(stored(id), picture());

        leave(box, end);
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(stored(id), picture().transformed(QTransform().rotate(90)));
        QTRY_VERIFY(!box || !offersSaving(box));
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void leavesTheChoiceWhatCannotBeSaved()
    {
        const qint64 id = addPicture("a.png"_s);
        LocalCollection::set("PreferencesDialog/autoSaveRotated", true);
        PreviewBox *box = open(id, ContentsOrder);
        const qint64 other = addPicture("b.png"_s);
        turn(box, "r"_s);
        Sql::run("UPDATE files SET data_checksum=data_checksum+1 WHERE file_id=%1"_s.arg(id));
        box->nextImage();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList("Error saving image: The turned picture could not be saved."_s));
        QTRY_VERIFY(box->fileId() == id && offersSaving(box));
        // Who goes on now does so without it.
        box->nextImage();
        QCOMPARE(box->fileId(), other);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void savesNothing_data()
    {
        addColumns<QString, bool>("turns", "isOffered");
        addRow("a whole turn", "rrrr"_s, false);
        addRow("back and forth", "rl"_s, false);
        addRow("cancelled", "rrr"_s, true);
        addRow("cancelled as it could not be saved by itself", "r"_s, true);
    }

    void savesNothing()
    {
        QFETCH(QString, turns);
        QFETCH(bool, isOffered);
        const qint64 id = addPicture("a.png"_s);
        PreviewBox *box = open(id);
        const bool isRefused = turns == "r"_s;
        LocalCollection::set("PreferencesDialog/autoSaveRotated", isRefused);
        turn(box, turns);
        if (isRefused) {
            OtherConnection other(m_fixture->path());
            QVERIFY(other.run("BEGIN IMMEDIATE"_s) && !box->close());
        }
        QTRY_COMPARE(offersSaving(box), isOffered);
        if (isOffered)
            press(box, "Cancel"_s);
        QTRY_VERIFY(!offersSaving(box));
        QTRY_COMPARE(preview(box)->pictureSize(), picture().size());
        box->close();
        QCOMPARE(stored(id), picture());
    }

    void readOnlyOffersNothing()
    {
        const qint64 id = addPicture("a.png"_s);
        m_fixture->reopenReadOnly();
        PreviewBox *box = open(id);
        turn(box, "r"_s);
        QCOMPARE(preview(box)->pictureSize(), picture().size().transposed());
        QVERIFY(!offersSaving(box));
        QVERIFY(description(box)->isReadOnly());
        // Nor a menu to hide its bar for good.
        QContextMenuEvent asked(QContextMenuEvent::Mouse, {5, 5});
        QApplication::sendEvent(box->findChild<NavigationBar *>(), &asked);
        QVERIFY(!QApplication::activePopupWidget());
        LocalCollection::set("PreferencesDialog/autoSaveRotated", true);
        turn(box, "r"_s);
        m_previews->closeAll();
        QCOMPARE(stored(id), picture());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void tellsWhatCannotBeShown()
    {
        const qint64 good = addPicture("a.png"_s);
        addPicture("b.png"_s, false);
        const qint64 spoilt = addPicture("c.png"_s);
        QFile::remove(m_fixture->filePath("b.png"_s));
        Sql::run("UPDATE storage SET data='no picture' WHERE storage_id=%1"_s.arg(
            m_fixture->file(spoilt)->storageId()));
        PreviewBox *box = open(good, ContentsOrder);
        for (const char *start : {"File No Longer Present: This image", "Error previewing image: An error"}) {
            box->nextImage();
            QVERIFY(box->fileId() != good);
            QStringList boxes;
            QTRY_VERIFY(!(boxes += m_fixture->takeBoxes()).isEmpty());
            QCOMPARE(boxes.join(QLatin1Char('|')).left(int(qstrlen(start))), QString::fromUtf8(start));
            QVERIFY(!preview(box)->hasPicture());
        }
        // What cannot be shown can be passed, and a slide show passes it by itself and in silence.
        box->nextImage();
        QCOMPARE(box->fileId(), good);
        QTRY_VERIFY(preview(box)->hasPicture());
        QCOMPARE(preview(box)->text(), QString());
        const qint64 last = addPicture("d.png"_s);
        LocalCollection::set("PreferencesDialog/slideshowIncrementTime", 1);
        box->startSlideshow();
        QVERIFY(box->isFullScreen());
        QTRY_COMPARE(box->fileId(), last);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void aBusyDatabaseIsToldInThePicturesPlace()
    {
        const qint64 first = addPicture("a.png"_s);
        const qint64 second = addPicture("b.png"_s);
        PreviewBox *box = open(first);
        OtherConnection other(m_fixture->path());
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        QSignalSpy warned(m_fixture->get(), &Collection::showTempWarning);
        box->nextImage();
        QTRY_COMPARE(preview(box)->text(),
                     "The database is busy. The picture comes as soon as it is free."_s);
        QCOMPARE(box->fileId(), second);
        // What is typed meanwhile stays where it is.
        QLineEdit *description = TestPreview::description(box);
        QTest::keyClicks(description, "words"_s);
        QVERIFY(other.run("ROLLBACK"_s));
        QTRY_VERIFY(preview(box)->hasPicture());
        QCOMPARE(description->text(), "words"_s);
        QCOMPARE(warned.count(), 0);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void aSlowPictureCanBeLeft()
    {
        PicturePool::instance().setLimits(PictureUse::Whole, {512 * 1024 * 1024, 600});
        const qint64 good = addPicture("a.png"_s);
        const qint64 slow = addPicture("b.png"_s, false);
        const QString path = m_fixture->filePath("b.png"_s);
        QVERIFY(QFile::remove(path) && QFile::copy(QStringLiteral(VORNA_TEST_PICTURES "/m6.mng"), path));
        PreviewBox *box = open(good, ContentsOrder);
        auto *cancel = box->findChild<QPushButton *>("cancelLoadingButton"_s);
        for (const bool isCanceled : {true, false}) {
            box->nextImage();
            QCOMPARE(box->fileId(), slow);
            QTRY_VERIFY(cancel->isVisible());
            QVERIFY(!preview(box)->hasPicture());
            if (isCanceled) {
                cancel->click();
                QVERIFY(!cancel->isVisible() && !preview(box)->text().isEmpty());
            }
            box->nextImage();
            QCOMPARE(box->fileId(), good);
            box->rotateClockwise();
            QTRY_COMPARE(preview(box)->pictureSize(), picture().size().transposed());
            QVERIFY(!cancel->isVisible());
        }
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void escapeEndsTheShowThenTheWindow()
    {
        const QPointer<PreviewBox> box = open(addPicture("a.png"_s));
        const QByteArray geometry = box->saveGeometry();
        box->startSlideshow();
        QVERIFY(!description(box)->isVisible());
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!box->isFullScreen() && description(box)->isVisible());
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!box->isVisible());
        QTRY_VERIFY(!box);

        // The next one stands where this one stood, also if it ended under a full screen.
        PreviewBox *next = open(m_fixture->mainView().shownFileIds().first());
        next->startSlideshow();
        m_previews->closeAll();
        QCOMPARE(QSettings().value("PreviewBox/geometry"_s).toByteArray().size(), geometry.size());
        QVERIFY(!open(m_fixture->mainView().shownFileIds().first())->isFullScreen());
    }

    void aSlideStaysAsLongAsItIsWantedNow_data()
    {
        addColumns<bool>("isStep");
        addRow("the preferences were changed", false);
        addRow("stepped by hand", true);
    }

    void aSlideStaysAsLongAsItIsWantedNow()
    {
        QFETCH(bool, isStep);
        const qint64 first = addPicture("a.png"_s);
        const qint64 second = addPicture("b.png"_s);
        PreviewBox *box = open(first, ContentsOrder);
        LocalCollection::set("PreferencesDialog/slideshowIncrementTime", 1000);
        box->startSlideshow();
        LocalCollection::set("PreferencesDialog/slideshowIncrementTime", 1);
        if (isStep)
            box->nextImage();
        else
            m_previews->readSettings();
        QTRY_COMPARE(box->fileId(), isStep ? first : second);
    }

    void keepsDescriptions()
    {
        const qint64 a = addPicture("a.png"_s);
        const qint64 b = addPicture("b.png"_s);
        PreviewBox *box = open(a, ContentsOrder);
        type(box, "one \"quoted\" word"_s);
        QTest::keyClick(description(box), Qt::Key_Return);
        QCOMPARE(m_fixture->file(a)->description(), "one quoted word"_s);
        QVERIFY(!description(box)->hasFocus());

        type(box, "!"_s);
        box->nextImage();
        QCOMPARE(m_fixture->file(a)->description(), "one quoted word!"_s);
        QCOMPARE(description(box)->text(), QString());
        // What was written elsewhere arrives, and is not overwritten by what stood here.
        m_fixture->mainView().updateFileDescription(b, "from \"elsewhere\""_s);
        QTRY_COMPARE(description(box)->text(), "from \"elsewhere\""_s);
        m_fixture->mainView().updateFileDescription(b, "later"_s);
        box->close();
        QCOMPARE(m_fixture->file(b)->description(), "later"_s);

        // Neither is what was typed lost to a lock.
        box = open(a);
        type(box, "?"_s);
        {
            OtherConnection other(m_fixture->path());
            QVERIFY(other.run("BEGIN IMMEDIATE"_s));
            box->nextImage();
        }
        QVERIFY(box->fileId() == a && description(box)->text().endsWith("?"_s));
        press(box, "Cancel"_s);
        QCOMPARE(description(box)->text(), "one quoted word!"_s);
        type(box, "?"_s);
        QTest::keyClick(description(box), Qt::Key_Escape);
        QVERIFY(!box->isVisible());
        QCOMPARE(m_fixture->file(a)->description(), "one quoted word!?"_s);
        // Another file may get the id of one that is gone, yet not what was written for that.
        box = open(b);
        type(box, "lost"_s);
        m_fixture->mainView().deleteFiles({b});
        QTRY_COMPARE(description(box)->text(), QString());
    }

private:
    /** The files on show after each step of "< >". */
    static QVector<qint64> walked(PreviewBox *box, const QString &steps)
    {
        QVector<qint64> ids;
        for (const QString &step : steps.split(QLatin1Char(' '))) {
            QTest::keyClick(box, step == "<"_s ? Qt::Key_Left : Qt::Key_Right);
            ids.append(box->fileId());
        }
        return ids;
    }
    static void turn(PreviewBox *box, const QString &turns)
    {
        for (const QChar turn : turns)
            turn == QLatin1Char('r') ? box->rotateClockwise() : box->rotateAnticlockwise();
    }
    QImage stored(qint64 id) { return m_fixture->mainView().loadImage(id)->result().image; }
    static QDialogButtonBox *buttons(PreviewBox *box) { return box->findChild<QDialogButtonBox *>(); }
    static bool offersSaving(PreviewBox *box) { return buttons(box)->isVisible(); }
    static void press(PreviewBox *box, const QString &text)
    {
        for (QAbstractButton *button : buttons(box)->buttons()) {
            if (button->text().remove(QLatin1Char('&')) == text)
                button->click();
        }
    }
    /** Presses a button, or goes on in another way. */
    void leave(PreviewBox *box, const QString &end)
    {
        if (end == "walk"_s || end == "show"_s) {
            if (end == "show"_s)
                box->startSlideshow();
            box->nextImage();
        } else if (end == "close"_s) {
            QTest::keyClick(box, Qt::Key_Escape);
        } else if (end == "database"_s) {
            m_previews->saveWaiting();
        } else if (end == "loss"_s) {
            m_previews->closeAll();
        } else {
            press(box, end);
        }
    }
    static QLineEdit *description(PreviewBox *box) { return box->findChild<QLineEdit *>(); }
    static void type(PreviewBox *box, const QString &text)
    {
        description(box)->setFocus();
        description(box)->end(false);
        QTest::keyClicks(description(box), text);
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
