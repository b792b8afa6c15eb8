#include "app/constants.h"
#include "models/contentshost.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/modelroles.h"
#include "models/sorter.h"
#include "tests/support/filerecords.h"
#include "tests/support/settingssandbox.h"

#include <QAbstractItemModelTester>
#include <QDataStream>
#include <QImage>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QPixmap>
#include <QSet>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

using Ids = QVector<qint64>;

/** Notes what the model asks for; answers as the rows of a test want it. */
class NotingHost : public ContentsHost
{
public:
    bool isWritable() const override { return !isReadOnly; }
    bool mayEdit() override
    {
        ++askedEdits;
        return !isReadOnly;
    }
    QString joinedTagNames(const Ids &tagIds) const override
    {
        QStringList names;
        for (qint64 tagId : tagIds)
            names.append(QStringLiteral("tag%1").arg(tagId));
        return names.join(QLatin1String(", "));
    }
    bool isFileMissing(qint64 fileId) const override { return missing.contains(fileId); }
    const QImage *thumbnailOf(qint64 fileId) const override
    {
        askedThumbnails.insert(fileId);
        return thumbnail.isNull() ? nullptr : &thumbnail;
    }
    bool renameFile(qint64 fileId, const QString &name) override
    {
        calls.append(QStringLiteral("rename %1 %2").arg(QString::number(fileId), name));
        return true;
    }
    bool describeFile(qint64 fileId, const QString &description) override
    {
        calls.append(QStringLiteral("describe %1 %2").arg(QString::number(fileId), description));
        return true;
    }
    bool linkTagsToFile(qint64 fileId, const Ids &tagIds) override
    {
        calls.append(QStringLiteral("link %1 %2").arg(QString::number(fileId), joinedTagNames(tagIds)));
        return true;
    }

    bool isReadOnly = false;
    int askedEdits = 0;
    QSet<qint64> missing;
    QImage thumbnail;
    mutable QSet<qint64> askedThumbnails;
    QStringList calls;
};

QByteArray streamed(const Ids &ids)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << ids;
    return bytes;
}

// The pictures of the program are not linked here: a thumbnail of one colour shows what was drawn over it.
QImage greenThumbnail()
{
    QImage image(128, 128, QImage::Format_ARGB32);
    image.fill(Qt::green);
    return image;
}

} // namespace

/** The table of all files: rows, roles, edits and drags. */
class TestContentsModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void headers();
    void columnsShowTheRecord_data();
    void columnsShowTheRecord();
    void rolesGiveTheRecord();
    void longNamesAreElidedForDisplayOnly();
    void invalidRowsGiveNothing();
    void flagsAllowEditsOfNamesAndDescriptions();
    void edits_data();
    void edits();
    void editsOfAReadOnlyDatabaseAreRefused();
    void dragsHoldEachFileOnce();
    void dropsOfTags_data();
    void dropsOfTags();
    void thumbnailsAreAskedForBySight();
    void rowsFollowTheRecords_data();
    void rowsFollowTheRecords();
    void selectionOutlivesManyChanges_data();
    void selectionOutlivesManyChanges();
    void repaintsTouchOnlyPictures();

private:
    void fill(int count);
    QModelIndex at(int row, int column) const { return m_model->index(row, column); }

    SettingsSandbox m_sandbox;
    std::unique_ptr<NotingHost> m_host;
    std::unique_ptr<FileRecords> m_records;
    std::unique_ptr<ContentsModel> m_model;
    QVector<File *> m_files;
};

void TestContentsModel::init()
{
    m_host = std::make_unique<NotingHost>();
    m_records = std::make_unique<FileRecords>();
    m_model = std::make_unique<ContentsModel>();
    m_model->setHost(m_host.get());
    m_files.clear();
}

void TestContentsModel::cleanup()
{
    m_model.reset();
    m_records.reset();
}

void TestContentsModel::fill(int count)
{
    for (int i = 0; i < count; ++i)
        m_files.append(m_records->add({1, i % 5 + 2}, i % 3, QStringLiteral("file %1.txt").arg(i), 1000 + i));
    m_model->loadFiles(FileRecords::map(m_files));
}

void TestContentsModel::headers()
{
    const QStringList expected{
        QStringLiteral("Thumbnail"), QStringLiteral("Name"),          QStringLiteral("Modification Date"),
        QStringLiteral("Size"),      QStringLiteral("Addition Date"), QStringLiteral("Type"),
        QStringLiteral("Tags"),      QStringLiteral("Description"),   QStringLiteral("ID Code"),
        QStringLiteral("LoadID")};
    QStringList shown;
    for (int column = 0; column < m_model->columnCount(); ++column)
        shown.append(m_model->headerData(column, Qt::Horizontal).toString());
    QCOMPARE(shown, expected);
    QVERIFY(!m_model->headerData(0, Qt::Vertical).isValid());
    QVERIFY(!m_model->headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
    QVERIFY(!m_model->headerData(10, Qt::Horizontal).isValid());
}

void TestContentsModel::columnsShowTheRecord_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("shown");
    QTest::newRow("picture") << 0 << QVariant(QStringLiteral("\nfile 1.txt"));
    QTest::newRow("name") << 1 << QVariant(QStringLiteral("file 1.txt"));
    QTest::newRow("modified") << 2 << QVariant(QDateTime::fromSecsSinceEpoch(26));
    QTest::newRow("size") << 3 << QVariant(qint64(14));
    QTest::newRow("added") << 4 << QVariant(QDateTime::fromSecsSinceEpoch(1001));
    QTest::newRow("type") << 5 << QVariant(QStringLiteral(".txt"));
    QTest::newRow("tags") << 6 << QVariant(QStringLiteral("tag1, tag3"));
    QTest::newRow("description") << 7 << QVariant(QString());
    QTest::newRow("id code") << 8 << QVariant(QStringLiteral("code2"));
    QTest::newRow("load id") << 9 << QVariant(qint64(1));
}

void TestContentsModel::columnsShowTheRecord()
{
    QFETCH(int, column);
    fill(3);
    QTEST(at(1, column).data(), "shown");
}

void TestContentsModel::rolesGiveTheRecord()
{
    fill(3);
    const QModelIndex index = at(1, 4);
    const QVector<QVariant> expected{QStringLiteral("file 1.txt"),
                                     qint64(2),
                                     QString(),
                                     QVariant(),
                                     QDateTime::fromSecsSinceEpoch(1001),
                                     QDateTime::fromSecsSinceEpoch(26),
                                     qint64(14),
                                     QString(),
                                     QString(),
                                     QStringLiteral("code2"),
                                     1};
    for (int i = 0; i < expected.size(); ++i) {
        const int role = 257 + i;
        // Lists of ids compare by address inside a QVariant.
        if (role == ContentsRoles::Tags)
            QCOMPARE(index.data(role).value<Ids>(), (Ids{1, 3}));
        else
            QVERIFY2(index.data(role) == expected.at(i), qPrintable(QString::number(role)));
    }
    QVERIFY(!index.data(257 + expected.size()).isValid());
}

void TestContentsModel::longNamesAreElidedForDisplayOnly()
{
    const QString name = QStringLiteral("a very long name ").repeated(20) + QStringLiteral(".txt");
    m_model->loadFiles(FileRecords::map({m_records->add({}, 1, name)}));
    const QModelIndex index = at(0, 0);
    QVERIFY(index.data().toString().size() < name.size());
    QVERIFY(index.data().toString().startsWith(QLatin1Char('\n')));
    QCOMPARE(index.data(Qt::EditRole).toString(), name);
    QCOMPARE(index.data(Qt::ToolTipRole).toString(), name);
    QCOMPARE(index.data(Qt::AccessibleTextRole).toString(), name);
    QCOMPARE(at(0, 1).data().toString(), name);
}

void TestContentsModel::invalidRowsGiveNothing()
{
    fill(2);
    QVERIFY(!m_model->data(QModelIndex(), ContentsRoles::FileId).isValid());
    QVERIFY(!m_model->index(2, 0).isValid());
    QCOMPARE(m_model->rowCount(at(0, 0)), 0);
    QVERIFY(!m_model->fileAt(-1));
    QVERIFY(!m_model->fileAt(2));
    QCOMPARE(m_model->rowOf(99), -1);
}

void TestContentsModel::flagsAllowEditsOfNamesAndDescriptions()
{
    fill(1);
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const bool isEditable = column == 0 || column == 1 || column == 7;
        QCOMPARE(int(m_model->flags(at(0, column))), isEditable ? 47 : 45);
    }
    QCOMPARE(int(m_model->flags(QModelIndex())), 0);
}

void TestContentsModel::edits_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("call");
    const int edit = Qt::EditRole;
    QTest::newRow("name") << 1 << edit << QStringLiteral("new.txt") << QStringLiteral("rename 1 new.txt");
    QTest::newRow("name under the picture")
        << 0 << edit << QStringLiteral("new.txt") << QStringLiteral("rename 1 new.txt");
    QTest::newRow("trimmed name") << 1 << edit << QStringLiteral("  a b ") << QStringLiteral("rename 1 a b");
    QTest::newRow("display role") << 1 << int(Qt::DisplayRole) << QStringLiteral("d")
                                  << QStringLiteral("rename 1 d");
    QTest::newRow("empty name") << 1 << edit << QString() << QString();
    QTest::newRow("blank name") << 1 << edit << QStringLiteral("   ") << QString();
    QTest::newRow("equal name") << 1 << edit << QStringLiteral(" file 0.txt") << QString();
    QTest::newRow("description") << 7 << edit << QStringLiteral(" %1'") << QStringLiteral("describe 1  %1'");
    QTest::newRow("equal description") << 7 << edit << QString() << QString();
    QTest::newRow("other role") << 1 << int(Qt::UserRole) << QStringLiteral("x") << QString();
    QTest::newRow("other column") << 3 << edit << QStringLiteral("5") << QString();
}

void TestContentsModel::edits()
{
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QString, text);
    QFETCH(QString, call);
    fill(1);
    QCOMPARE(m_model->setData(at(0, column), text, role), !call.isEmpty());
    QCOMPARE(m_host->calls.join(QLatin1Char('|')), call);
}

void TestContentsModel::editsOfAReadOnlyDatabaseAreRefused()
{
    fill(1);
    m_host->isReadOnly = true;
    QVERIFY(!m_model->setData(at(0, 1), QStringLiteral("x")));
    QVERIFY(!m_model->setData(at(0, 7), QStringLiteral("x")));
    QMimeData mime;
    mime.setData(Constants::tagMimeType, streamed({5}));
    QVERIFY(!m_model->dropMimeData(&mime, Qt::CopyAction, -1, -1, at(0, 0)));
    QCOMPARE(m_host->askedEdits, 3);
    QVERIFY(m_host->calls.isEmpty());
}

void TestContentsModel::dragsHoldEachFileOnce()
{
    fill(4);
    QCOMPARE(m_model->mimeTypes(), (QStringList{Constants::fileMimeType, Constants::tagMimeType}));
    const std::unique_ptr<QMimeData> mime(m_model->mimeData({at(2, 0), at(2, 1), at(0, 0), at(2, 5)}));
    QCOMPARE(mime->formats(), QStringList{Constants::fileMimeType});
    QCOMPARE(mime->data(Constants::fileMimeType), streamed({3, 1}));
    QVERIFY(!m_model->mimeData({}));
}

void TestContentsModel::dropsOfTags_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("call");
    const QString tags = Constants::tagMimeType;
    QTest::newRow("tags on a file") << tags << streamed({5, 6}) << 1 << QStringLiteral("link 2 tag5, tag6");
    QTest::newRow("tags beside the files") << tags << streamed({5}) << -1 << QString();
    QTest::newRow("no tags") << tags << streamed({}) << 1 << QString();
    QTest::newRow("broken bytes") << tags << streamed({5, 6}).left(9) << 1 << QString();
    QTest::newRow("other data") << Constants::fileMimeType << streamed({5}) << 1 << QString();
}

void TestContentsModel::dropsOfTags()
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
    QCOMPARE(m_host->calls.join(QLatin1Char('|')), call);
    m_host->isReadOnly = true;
    QCOMPARE(m_model->canDropMimeData(&mime, Qt::CopyAction, -1, -1, target), type == Constants::tagMimeType);
}

void TestContentsModel::thumbnailsAreAskedForBySight()
{
    File picture(1, 5, 0, 0, 1, QStringLiteral("a.png"), {}, {}, {}, {}, 1, 7, 0, 1);
    File document(2, 5, 0, 0, 1, QStringLiteral("a.pdf"), {}, {}, {}, {}, 1, 8, 0, 1);
    m_model->loadFiles(FileRecords::map({&picture, &document}));
    m_host->thumbnail = greenThumbnail();
    for (int row = 0; row < 2; ++row) {
        QVERIFY(at(row, 0).data(Qt::SizeHintRole).toSize().isValid());
        QVERIFY(at(row, 1).data(Qt::DecorationRole).isNull());
    }
    QVERIFY(m_host->askedThumbnails.isEmpty());

    const auto shown = at(0, 0).data(Qt::DecorationRole).value<QPixmap>().toImage();
    QCOMPARE(shown.pixelColor(64, 64), QColor(Qt::green));
    QVERIFY(at(1, 0).data(Qt::DecorationRole).isValid());
    QCOMPARE(m_host->askedThumbnails, QSet<qint64>{1});

    m_host->thumbnail.fill(Qt::red);
    const auto repainted = at(0, 0).data(Qt::DecorationRole).value<QPixmap>().toImage();
    QCOMPARE(repainted.pixelColor(64, 64), QColor(Qt::red));
    m_model->loadFiles({});
}

void TestContentsModel::rowsFollowTheRecords_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("row by row") << 40;
    QTest::newRow("in one go") << 1600;
}

void TestContentsModel::rowsFollowTheRecords()
{
    QFETCH(int, count);
    if (count < 100)
        new QAbstractItemModelTester(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                     m_model.get());
    fill(count);
    QVector<File *> added;
    for (int i = 0; i < count; ++i)
        added.append(m_records->add({}, 1, QStringLiteral("added")));
    m_model->addFiles(FileRecords::map(added));
    QCOMPARE(m_model->rowCount(), 2 * count);

    Ids removed{9999999};
    for (int id = 1; id <= 2 * count; ++id) {
        if (id % 3 != 0)
            removed.append(id);
    }
    QSignalSpy finished(m_model.get(), &ContentsModel::contentsChanged);
    m_model->removeFiles(removed);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_model->rowCount(), 2 * count / 3);
    for (int row = 0; row < m_model->rowCount(); ++row) {
        QCOMPARE(at(row, 0).data(ContentsRoles::FileId).toLongLong(), 3 * (row + 1));
        QCOMPARE(m_model->rowOf(3 * (row + 1)), row);
    }
    m_model->addFiles(FileRecords::map({m_files.at(2), m_files.at(0)}));
    QCOMPARE(m_model->rowOf(1), m_model->rowCount() - 1);
    QCOMPARE(m_model->rowOf(3), 0);
    m_model->clear();
    QCOMPARE(m_model->rowCount(), 0);
}

void TestContentsModel::selectionOutlivesManyChanges_data()
{
    QTest::addColumn<int>("changes");
    QTest::newRow("few") << 3;
    QTest::newRow("many") << 900;
}

void TestContentsModel::selectionOutlivesManyChanges()
{
    QFETCH(int, changes);
    fill(2000);
    FileFilterModel filter;
    filter.setSourceModel(m_model.get());
    Sorter sorter;
    sorter.setSourceModel(&filter);
    filter.setTagRequirements({{1}, {}, {}, {}, {}, {}});
    sorter.sort(ContentsModel::NameColumn, Qt::DescendingOrder);
    QItemSelectionModel selection(&sorter);
    QSet<qint64> chosen{1500, 1501, 1990};
    for (int row = 0; row < sorter.rowCount(); ++row) {
        if (chosen.contains(sorter.fileAt(row)->id()))
            selection.select(sorter.index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        if (sorter.fileAt(row)->id() == 1501)
            selection.setCurrentIndex(sorter.index(row, 1), QItemSelectionModel::NoUpdate);
    }

    QVector<File *> added;
    Ids removed;
    Ids changed;
    for (int i = 0; i < changes; ++i) {
        added.append(m_records->add({1}, 1, QStringLiteral("new %1").arg(i)));
        removed.append(i + 1);
        changed.append(i + 1000);
        m_files.at(i + 999)->setTags({1, 9});
    }
    m_model->addFiles(FileRecords::map(added));
    m_model->removeFiles(removed);
    m_model->updateFiles(changed);

    QSet<qint64> kept;
    for (const QModelIndex &index : selection.selectedRows())
        kept.insert(index.data(ContentsRoles::FileId).toLongLong());
    QCOMPARE(kept, chosen);
    QCOMPARE(selection.currentIndex().data(ContentsRoles::FileId).toLongLong(), 1501);
    m_model->removeFiles({1500, 1990});
    QCOMPARE(selection.selectedRows().size(), 1);
}

void TestContentsModel::repaintsTouchOnlyPictures()
{
    fill(10);
    QSignalSpy changes(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->repaintFiles({5, 77, 4, 9});
    QCOMPARE(changes.size(), 2);
    for (const QVariantList &change : changes)
        QCOMPARE(change.at(2).value<QVector<int>>(), QVector<int>{Qt::DecorationRole});
    QCOMPARE(changes.at(1).at(0).toModelIndex().row(), 3);
    QCOMPARE(changes.at(1).at(1).toModelIndex(), at(4, 9));
}

QTEST_MAIN(TestContentsModel)
#include "tst_contentsmodel.moc"
