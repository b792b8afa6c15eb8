#include "tests/support/previewtest.h"
#include "ui/preview/picturearea.h"
#include "ui/preview/picturescale.h"
#include "ui/preview/windowplace.h"

/** How large the previewer shows a picture, and where a second one stands. */
class TestPreviewScale : public PreviewTest
{
    Q_OBJECT

private slots:
    void init() { openDatabase(); }
    void cleanup() { closeDatabase(); }

    void wheelZoomsAtThePointer()
    {
        QImage large(3000, 2000, QImage::Format_RGB32);
        large.fill(Qt::darkCyan);
        PreviewBox *box = open(addPicture("a.png"_s, true, large));
        auto *area = box->findChild<PictureArea *>();
        QVERIFY(area->scale() < 1 && area->scale() > 0.1);
        const QPointF pointer(area->viewport()->width() * 0.7, area->viewport()->height() * 0.4);
        const auto pointed = [&] {
            const QPointF onLabel = pointer - preview(box)->pos();
            return onLabel / preview(box)->width() * large.width();
        };
        wheel(area, pointer, 120 * 11);
        QCOMPARE(area->scale(), 1.0);
        wheel(area, pointer, 120 * 5);
        const QPointF before = pointed();
        wheel(area, pointer, 120 * 12);
        QVERIFY(QLineF(before, pointed()).length() < 2);
        QCOMPARE(area->scale(), 32.0);
        // What is on the screen alone is painted, of a picture that would fill 24 gigabytes.
        QCOMPARE(preview(box)->width(), 96000);
        QCOMPARE(QColor(area->grab().toImage().pixel(50, 50)), QColor(Qt::darkCyan));

        wheel(area, pointer, -120 * 100);
        wheel(area, pointer, -120 * 100);
        QCOMPARE(preview(box)->size(), QSize(16, 11));
        box->zoom100();
        QCOMPARE(preview(box)->size(), large.size());
    }

    void pictureScale_data()
    {
        addColumns<QSize, QSize, double, double>("picture", "room", "halved", "filling");
        addRow("fits", QSize(640, 480), QSize(640, 480), 1.0, 1.0);
        addRow("a pixel too wide", QSize(641, 480), QSize(640, 480), 0.5, 640 / 641.0);
        addRow("too high by far", QSize(10, 30000), QSize(640, 480), 1 / 64.0, 480 / 30000.0);
        addRow("small", QSize(10, 10), QSize(640, 480), 1.0, 1.0);
        addRow("no room yet", QSize(2, 2), QSize(0, 0), 0.5, 1.0);
    }

    void pictureScale()
    {
        QFETCH(QSize, picture);
        QFETCH(QSize, room);
        QTEST(PictureScale::fitting(picture, room), "halved");
        QTEST(PictureScale::filling(picture, room), "filling");
    }

    void fitFillsTheWindowUntilTheNextPicture()
    {
        const QSize large(3000, 2000);
        QImage image(large, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        PreviewBox *box = open(addPicture("large.png"_s, true, image));
        auto *area = box->findChild<PictureArea *>();
        box->resize(800, 640);
        const double halved = PictureScale::fitting(large, area->maximumViewportSize());
        QTRY_COMPARE(area->scale(), halved);
        QTest::keyClick(box, Qt::Key_9, Qt::ControlModifier);
        QCOMPARE(area->scale(), PictureScale::filling(large, area->maximumViewportSize()));
        box->resize(700, 600);
        QTRY_COMPARE(area->scale(), PictureScale::filling(large, area->maximumViewportSize()));

        // No bars beside a picture that is larger than the screen.
        box->goFullScreen();
        QTest::keyClick(box, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(area->scale(), 1.0);
        QCOMPARE(area->viewport()->size(), area->size());
        box->finishSlideshow();
        box->refresh();
        QVERIFY(isSettled(box));
        QTRY_COMPARE(area->scale(), PictureScale::fitting(large, area->maximumViewportSize()));
    }

    void anotherWindowStandsBeside_data()
    {
        addColumns<QVector<QRect>, QPoint>("others", "corner");
        const QRect screen(0, 20, 1000, 800);
        addRow("to the right", QVector<QRect>{QRect(0, 20, 400, 400)}, QPoint(400, 20));
        addRow("to the left", QVector<QRect>{QRect(500, 20, 400, 400)}, QPoint(100, 20));
        addRow("below", QVector<QRect>{QRect(300, 20, 400, 400)}, QPoint(300, 420));
        addRow("beside both", QVector<QRect>{QRect(0, 20, 400, 400), QRect(400, 20, 400, 400)},
               QPoint(0, 420));
        addRow("no room", QVector<QRect>{QRect(300, 220, 400, 400)}, QPoint(332, 252));
        addRow("no room for a step", QVector<QRect>{QRect(300, 400, 600, 420), QRect(300, 400, 700, 420)},
               screen.topLeft());
    }

    void anotherWindowStandsBeside()
    {
        QFETCH(QVector<QRect>, others);
        QTEST(WindowPlace::beside({400, 400}, others, QRect(0, 20, 1000, 800)), "corner");
    }

private:
    static void wheel(PictureArea *area, const QPointF &point, int delta)
    {
        QWheelEvent event(point, area->viewport()->mapToGlobal(point.toPoint()), {}, {0, delta}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(area->viewport(), &event);
    }
};

QTEST_MAIN(TestPreviewScale)
#include "tst_previewscale.moc"
