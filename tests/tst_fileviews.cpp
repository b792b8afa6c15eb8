#include "tests/support/text.h"
#include "ui/views/listview.h"
#include "ui/widgets/delegate.h"
#include "ui/widgets/dragpicture.h"
#include "ui/widgets/selectedrows.h"
#include "ui/widgets/tableview.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QVBoxLayout>

/** Takes files, and counts how often it is asked for a picture. */
class CountingModel : public QStandardItemModel
{
    Q_OBJECT

public:
    using QStandardItemModel::QStandardItemModel;

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::DecorationRole)
            ++pictures;
        return QStandardItemModel::data(index, role);
    }
    QStringList mimeTypes() const override { return {"text/uri-list"_s}; }
    bool dropMimeData(const QMimeData *, Qt::DropAction, int, int, const QModelIndex &) override
    {
        return true;
    }

    mutable int pictures = 0;
};

/** Keys, drags and editing in the two views of files, apart from any database. */
class TestFileViews : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_model.clear();
        for (const char *name : {"Anna", "anton", "Berta", "\"quoted\"", "Antje"}) {
            m_model.appendRow({new QStandardItem(QLatin1String("\n") + QLatin1String(name)),
                               new QStandardItem(QLatin1String(name))});
        }
        m_window = std::make_unique<QWidget>();
        m_list = new ListView(m_window.get());
        m_table = new TableView(m_window.get());
        m_views = {m_list, m_table};
        auto *layout = new QVBoxLayout(m_window.get());
        for (QAbstractItemView *view : m_views) {
            layout->addWidget(view);
            view->setModel(&m_model);
            view->setItemDelegate(new Delegate(view));
        }
        const auto nameAt = [this](int row) { return m_model.item(row, 1)->text(); };
        m_list->setNames(nameAt);
        m_table->setNames(nameAt);
        m_window->resize(600, 600);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void hitIsMarkedWhereverItStands_data()
    {
        addColumns<QString, QString, int>("name", "hit", "lines");
        addRow("in one line", "Anna"_s, "NN"_s, 1);
        addRow("parted by the end of a line", QString(100, QLatin1Char('a')).insert(9, "bbbbbb"_s),
               "bbbbbb"_s, 2);
        addRow("in what is left out", QString(300, QLatin1Char('a')).insert(150, "hit"_s), "hit"_s, 1);
        addRow("not there", "Anna"_s, "x"_s, 0);
    }

    void hitIsMarkedWhereverItStands()
    {
        QFETCH(QString, name);
        QFETCH(QString, hit);
        m_model.clear();
        m_model.appendRow(new QStandardItem(name));
        auto *delegate = new Delegate(m_list);
        delegate->setHits([hit](const QModelIndex &) { return hit; });
        m_list->setItemDelegate(delegate);
        const QImage image = m_list->grab().toImage();
        int rows = 0;
        for (int y = 0; y < image.height(); ++y) {
            bool isMarked = false;
            for (int x = 0; x < image.width(); ++x)
                isMarked = isMarked || image.pixelColor(x, y) == QColor("#ffd966");
            rows += isMarked ? 1 : 0;
        }
        QTEST(qRound(double(rows) / m_list->fontMetrics().height()), "lines");
    }

    void cleanup() { m_window.reset(); }

    void lettersFindNames_data()
    {
        addColumns<QStringList, int>("typed", "row"); // each word after a pause
        addRow("word", QStringList{"ant"_s}, 1);
        addRow("same letter goes on", QStringList{"aa"_s}, 4);
        addRow("goes round", QStringList{"aaa"_s}, 0);
        addRow("second try", QStringList{"b"_s, "an"_s}, 4);
        addRow("no such name", QStringList{"x"_s}, 0);
    }

    void lettersFindNames()
    {
        QFETCH(QStringList, typed);
        QFETCH(int, row);
        for (QAbstractItemView *view : m_views) {
            view->setCurrentIndex(m_model.index(0, 0));
            for (const QString &word : typed) {
                // Each pause is long enough before the first letter, and none before the others.
                QApplication::setKeyboardInputInterval(0);
                QTest::qSleep(2);
                for (const QChar letter : word) {
                    view->keyboardSearch(letter);
                    QApplication::setKeyboardInputInterval(1000000);
                }
            }
            QCOMPARE(view->currentIndex().row(), row);
            QCOMPARE(view->currentIndex().column(), 0);
        }
    }

    void cellsTakeWhatTheyShow()
    {
        const QFontMetrics metrics = m_table->fontMetrics();
        const QModelIndex name = m_model.index(3, 1);
        QVERIFY(m_table->sizeHintForIndex(name).width() > metrics.horizontalAdvance(name.data().toString()));
        QVERIFY(m_table->sizeHintForIndex(name).height() < 2 * metrics.lineSpacing());
        QVERIFY(m_list->sizeHintForIndex(name).height() >
                m_list->iconSize().height() + 2 * metrics.lineSpacing());
    }

    void dragPictureIsAName()
    {
        QDrag drag(m_window.get());
        m_table->setCurrentIndex(m_model.index(0, 1));
        setDragPicture(&drag, m_table);
        const QImage picture = drag.pixmap().toImage();
        QVERIFY(picture.width() > m_table->fontMetrics().horizontalAdvance("Anna"_s));
        // In the middle, where no corner is round, there are letters on the ground.
        const QImage middle = picture.copy(picture.rect().adjusted(12, 2, -12, -2));
        const QRgb ground = m_table->palette().color(QPalette::Active, QPalette::Highlight).rgb();
        int empty = 0;
        for (int pixel = 0; pixel < middle.width() * middle.height(); ++pixel)
            empty += middle.pixel(pixel % middle.width(), pixel / middle.width()) == ground ? 1 : 0;
        QVERIFY(empty > middle.width() * middle.height() / 3);
        QVERIFY(empty < middle.width() * middle.height());
    }

    void onlyShownRowsAskForPictures()
    {
        m_list->hide();
        m_model.pictures = 0;
        for (int i = 0; i < 1000; ++i)
            m_model.appendRow(new QStandardItem(QString::number(i)));
        m_list->doItemsLayout();
        m_list->sizeHintForColumn(0);
        QCOMPARE(m_model.pictures, 0);
        for (QAbstractItemView *view : m_views) {
            for (QAbstractItemView *other : m_views)
                other->setVisible(other == view);
            view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum() / 2);
            QTRY_VERIFY(m_model.pictures > 0);
            view->viewport()->repaint();
            m_model.pictures = 0;
            view->viewport()->repaint();
            QVERIFY(m_model.pictures > 0 && m_model.pictures < 50);
            QCoreApplication::processEvents(); // what the scrolling has left to be painted
            m_model.pictures = 0;
            const QModelIndex arrived = view->indexAt({20, 50}).siblingAtColumn(0);
            emit m_model.dataChanged(arrived, arrived, {Qt::DecorationRole});
            QTRY_VERIFY(m_model.pictures > 0);
            QCOMPARE(m_model.pictures, 1);
        }
    }

    void filesOverTableMarkTheirRow()
    {
        const QColor highlight = m_table->palette().color(QPalette::Highlight);
        m_table->setCurrentIndex(m_model.index(0, 0));
        m_table->selectionModel()->select(m_model.index(1, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QMimeData data;
        data.setUrls({QUrl("https://example.org/"_s)});
        const QPoint pos = m_table->visualRect(m_model.index(3, 0)).center();
        QDragLeaveEvent leave;
        QDropEvent drop(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        for (QEvent *end : {static_cast<QEvent *>(&leave), static_cast<QEvent *>(&drop)}) {
            QDragEnterEvent enter(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_table->viewport(), &enter);
            QDragMoveEvent move(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_table->viewport(), &move);
            QCOMPARE(m_table->currentIndex().row(), 3);
            QCOMPARE(m_table->palette().color(QPalette::Highlight), QColor(204, 232, 255));
            QApplication::sendEvent(m_table->viewport(), end);
            QCOMPARE(m_table->palette().color(QPalette::Highlight), highlight);
            QCOMPARE(m_table->currentIndex().row(), 0);
            QCOMPARE(m_table->selectionModel()->selectedRows().size(), 2);
        }
    }

    void eachSelectedRowIsListedOnce()
    {
        m_table->selectAll();
        m_table->selectionModel()->select(m_model.index(1, 0),
                                          QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        QVector<int> rows;
        for (const QModelIndex &index : selectedRowIndexes(m_table->selectionModel()))
            rows.append(index.row());
        QCOMPARE(rows, (QVector<int>{0, 2, 3, 4}));
    }

private:
    CountingModel m_model;
    std::unique_ptr<QWidget> m_window;
    ListView *m_list = nullptr;
    TableView *m_table = nullptr;
    QList<QAbstractItemView *> m_views;
};

QTEST_MAIN(TestFileViews)
#include "tst_fileviews.moc"
