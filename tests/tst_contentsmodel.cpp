#include "app/settings/constants.h"
#include "models/base/modelroles.h"
#include "models/contents/filepictures.h"
#include "resources/resources.h"
#include "tests/support/filerecords.h"

#include <QItemSelectionModel>
#include <QPixmap>

namespace {

using Ids = QVector<qint64>;

QByteArray streamed(const Ids &ids)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << ids;
    return bytes;
}

} // namespace

/** The table of all files: rows, roles, edits and drags. */
class TestContentsModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_models = std::make_unique<FileModels>();
        m_model = &m_models->contents;
        m_host = &m_models->host;
    }

    void columnsShowTheRecord()
    {
        fill(3);
        QStringList shown;
        for (int column = 0; column < 10; ++column)
            shown << at(1, column).data().toString();
        const auto date = [](int seconds) {
            return QVariant(QDateTime::fromSecsSinceEpoch(seconds)).toString();
        };
        QCOMPARE(shown, (QStringList{"\nfile 1.txt"_s, "file 1.txt"_s, date(26), "14"_s, date(1001), ".txt"_s,
                                     "tag1, tag3"_s, QString(), "code2"_s, "1"_s}));
    }

    void longNamesAreElidedForDisplayOnly()
    {
        const QString name = "a very long name "_s.repeated(20) + ".txt"_s;
        m_model->loadFiles(FileRecords::map({m_models->records.add({}, 1, name)}));
        QVERIFY(at(0, 0).data().toString().size() < name.size());
        for (int role : {Qt::EditRole, Qt::ToolTipRole, Qt::AccessibleTextRole})
            QCOMPARE(at(0, 0).data(role).toString(), name);
        QCOMPARE(at(0, 1).data().toString(), name);
    }

    void edits_data()
    {
        addColumns<int, QString, QString>("column", "text", "call");
        addRow("name", 1, "new.txt"_s, "rename 1 new.txt"_s);
        addRow("name under the picture", 0, "new.txt"_s, "rename 1 new.txt"_s);
        addRow("trimmed name", 1, "  a b "_s, "rename 1 a b"_s);
        addRow("blank name", 1, "   "_s, QString());
        addRow("equal name", 1, " file 0.txt"_s, QString());
        addRow("description", 7, " %1'"_s, "describe 1  %1'"_s);
        addRow("equal description", 7, QString(), QString());
        addRow("other column", 3, "5"_s, QString());
    }

    void edits()
    {
        QFETCH(int, column);
        QFETCH(QString, text);
        QFETCH(QString, call);
        fill(1);
        QCOMPARE(m_model->setData(at(0, column), text), !call.isEmpty());
        m_host->isDatabaseReadOnly = true;
        QVERIFY(!m_model->setData(at(0, column), text));
        QCOMPARE(m_host->calls.join(QLatin1Char('|')), call);
    }

    void dragsHoldEachFileOnce()
    {
        fill(4);
        QCOMPARE(m_model->mimeTypes(), (QStringList{Constants::fileMimeType, Constants::tagMimeType}));
        const std::unique_ptr<QMimeData> mime(m_model->mimeData({at(2, 0), at(2, 1), at(0, 0), at(2, 5)}));
        QCOMPARE(mime->formats(), QStringList{Constants::fileMimeType});
        QCOMPARE(mime->data(Constants::fileMimeType), streamed({3, 1}));
        QVERIFY(!m_model->mimeData({}));
    }

    void dropsOfTags_data()
    {
        addColumns<QString, QByteArray, int, QString>("type", "bytes", "row", "call");
        const QString tags = Constants::tagMimeType;
        addRow("tags on a file", tags, streamed({5, 6}), 1, "link 2 tag5, tag6"_s);
        addRow("tags beside the files", tags, streamed({5}), -1, QString());
        addRow("broken bytes", tags, streamed({5, 6}).left(9), 1, QString());
        addRow("other data", Constants::fileMimeType, streamed({5}), 1, QString());
    }

    void dropsOfTags()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, bytes);
        QFETCH(int, row);
        QFETCH(QString, call);
        fill(3);
        QMimeData mime;
        mime.setData(type, bytes);
        const QModelIndex target = row < 0 ? QModelIndex() : at(row, 1);
        QCOMPARE(m_model->dropMimeData(&mime, Qt::CopyAction, -1, -1, target), !call.isEmpty());
        m_host->isDatabaseReadOnly = true;
        QVERIFY(!m_model->dropMimeData(&mime, Qt::CopyAction, -1, -1, target));
        QCOMPARE(m_host->calls.join(QLatin1Char('|')), call);
        QCOMPARE(m_model->canDropMimeData(&mime, Qt::CopyAction, -1, -1, target),
                 type == Constants::tagMimeType);
    }

    void thumbnailsAreAskedForBySight()
    {
        File picture(1, 5, 0, 0, 1, "a.png"_s, {}, {}, {}, {}, 1, 7, 0, 1);
        File document(2, 5, 0, 0, 1, "a.pdf"_s, {}, {}, {}, {}, 1, 8, 0, 1);
        m_model->loadFiles(FileRecords::map({&picture, &document}));
        // The pictures of the program are not linked here; a colour of our own tells a thumbnail.
        m_host->thumbnail = QImage(128, 128, QImage::Format_ARGB32);
        m_host->thumbnail.fill(Qt::green);
        for (int row = 0; row < 2; ++row) {
            QVERIFY(at(row, 0).data(Qt::SizeHintRole).toSize().isValid());
            QVERIFY(at(row, 1).data(Qt::DecorationRole).isNull());
        }
        QVERIFY(m_host->askedThumbnails.isEmpty());

        const auto colour = [this] {
            return at(0, 0).data(Qt::DecorationRole).value<QPixmap>().toImage().pixelColor(64, 64);
        };
        QCOMPARE(colour(), QColor(Qt::green));
        QVERIFY(at(1, 0).data(Qt::DecorationRole).isValid());
        QCOMPARE(m_host->askedThumbnails, QSet<qint64>{1});
        m_host->thumbnail.fill(Qt::red);
        QCOMPARE(colour(), QColor(Qt::red));
        m_model->loadFiles({});
    }

    void selectionOutlivesManyChanges_data()
    {
        addColumns<int>("changes");
        addRow("few", 3);
        addRow("many", 900);
    }

    void selectionOutlivesManyChanges()
    {
        QFETCH(int, changes);
        fill(2000);
        FileFilterModel &filter = m_models->filter;
        Sorter &sorter = m_models->sorter;
        filter.setTagRequirements({{1}, {}, {}, {}, {}, {}});
        sorter.sort(ContentsModel::NameColumn, Qt::DescendingOrder);
        QItemSelectionModel selection(&sorter);
        const Ids chosen{1500, 1990, 1501};
        for (qint64 id : chosen)
            selection.setCurrentIndex(sorter.mapFromSource(filter.mapFromSource(at(int(id) - 1, 1))),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);

        QVector<File *> added;
        Ids removed;
        Ids changed;
        for (int i = 0; i < changes; ++i) {
            added.append(m_models->records.add({1}, 1, "new %1"_s.arg(i)));
            removed.append(i + 1);
            changed.append(i + 1000);
            m_models->files.at(i + 999)->setTags({1, 9});
        }
        m_model->addFiles(FileRecords::map(added));
        m_model->removeFiles(removed);
        m_model->updateFiles(changed);

        QSet<qint64> lost(chosen.begin(), chosen.end());
        for (const QModelIndex &index : selection.selectedRows())
            QVERIFY(lost.remove(index.data(ContentsRoles::FileId).toLongLong()));
        QVERIFY(lost.isEmpty());
        QCOMPARE(selection.currentIndex().data(ContentsRoles::FileId).toLongLong(), 1501);
        Ids gone{1500, 1990};
        for (int i = 0; i < changes / 2; ++i)
            gone.append(i + 1502);
        m_model->removeFiles(gone);
        QCOMPARE(selection.selectedIndexes().size(), m_model->columnCount());
        QCOMPARE(selection.currentIndex().data(ContentsRoles::FileId).toLongLong(), 1501);
    }

    void repaintsTouchOnlyPictures()
    {
        fill(10);
        QSignalSpy changes(m_model, &QAbstractItemModel::dataChanged);
        m_model->repaintFiles({5, 77, 4, 9});
        QCOMPARE(changes.size(), 3);
        for (const QVariantList &change : changes) {
            QCOMPARE(change.at(2).value<QVector<int>>(), QVector<int>{Qt::DecorationRole});
            QCOMPARE(change.at(0), change.at(1)); // a view paints all that it shows for more than one cell
        }
        QCOMPARE(changes.at(1).at(0), QVariant(at(4, 0)));
        m_model->repaintAll();
        QCOMPARE(changes.last().mid(0, 2), (QVariantList{at(0, 0), at(9, 0)}));
        // Many are told of at once, from the first to the last.
        fill(40);
        changes.clear();
        Ids many;
        for (int i = 0; i < 36; ++i)
            many.append(m_model->fileAt(i + 2)->id());
        m_model->repaintFiles(many);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().mid(0, 2), (QVariantList{at(2, 0), at(37, 0)}));
    }

    void marksStandOverPictures_data()
    {
        addColumns<bool, int, bool, bool>("isMissing", "internal", "atTop", "atBottom");
        addRow("internal", false, 1, false, false);
        addRow("external", false, 0, false, true);
        addRow("hyperlink", false, 2, false, true);
        addRow("missing", true, 1, true, false);
        addRow("missing link", true, 0, true, true);
    }

    void marksStandOverPictures()
    {
        QFETCH(bool, isMissing);
        QFETCH(int, internal);
        initResources();
        FilePictures pictures;
        QImage thumbnail(64, 64, QImage::Format_ARGB32);
        thumbnail.fill(Qt::magenta);
        const QImage shown = pictures.ofThumbnail(1, &thumbnail, isMissing, internal)
                                 .toImage()
                                 .convertToFormat(QImage::Format_ARGB32);
        const auto isMarked = [&](const QRect &part) { return shown.copy(part) != thumbnail.copy(part); };
        QTEST(isMarked({32, 0, 32, 32}), "atTop");
        QTEST(isMarked({0, 32, 32, 32}), "atBottom");
        QVERIFY(!isMarked({0, 0, 32, 32}) && !isMarked({32, 32, 32, 32}));
    }

private:
    void fill(int count)
    {
        for (int i = 0; i < count; ++i)
            m_models->files.append(
                m_models->records.add({1, i % 5 + 2}, i % 3, "file %1.txt"_s.arg(i), 1000 + i));
        m_model->loadFiles(FileRecords::map(m_models->files));
    }

    QModelIndex at(int row, int column) const { return m_model->index(row, column); }

    std::unique_ptr<FileModels> m_models;
    ContentsModel *m_model = nullptr;
    NotingHost *m_host = nullptr;
};

QTEST_MAIN(TestContentsModel)
#include "tst_contentsmodel.moc"
