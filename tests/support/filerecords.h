#pragma once

#include "app/settings/constants.h"
#include "core/records/recordtypes.h"
#include "models/base/idlistmime.h"
#include "models/contents/contentshost.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"
#include "tests/support/settingssandbox.h"
#include "tests/support/text.h"

#include <QImage>

#include <memory>
#include <vector>

/** Records as the manager would hold them, for tests of what stands above it. Owns them all. */
class FileRecords
{
public:
    /** Makes a file with the next id; kinds as in File::internal(). */
    File *add(const QVector<qint64> &tags, int internal = 1, const QString &name = "file.txt"_s,
              qint64 additionSeconds = QDateTime::currentSecsSinceEpoch(),
              const QString &description = QString())
    {
        const qint64 id = m_nextId++;
        auto file =
            std::make_unique<File>(id, id * 7 % 1000, additionSeconds, id * 13 % 1000, 1, name, description,
                                   "code%1"_s.arg(id), QString(), QString(), 0, 0, 0, internal);
        file->setTags(tags);
        m_files.push_back(std::move(file));
        return m_files.back().get();
    }

    void setNextId(qint64 id) { m_nextId = id; }

    static FileMap map(const QVector<File *> &files)
    {
        QMap<qint64, File *> items;
        for (File *file : files)
            items.insert(file->id(), file);
        return FileMap(items);
    }

private:
    std::vector<std::unique_ptr<File>> m_files;
    qint64 m_nextId = 1;
};

/** Notes what the model asks for; answers as the rows of a test want it. Names tags by their ids. */
class NotingHost : public ContentsHost
{
public:
    bool isReadOnly() const override { return isDatabaseReadOnly; }
    bool mayEdit() override { return !isDatabaseReadOnly; }
    QString joinedTagNames(const QVector<qint64> &tagIds) const override
    {
        QStringList names;
        for (qint64 tagId : tagIds) {
            const qint64 number = isReversed || tagId == renamedTag ? 100 - tagId : tagId;
            const QString name = tagNames.value(tagId, "tag%1"_s.arg(number));
            if (!name.isEmpty())
                names.append(name);
        }
        return names.join(QLatin1String(", "));
    }
    bool isFileMissing(qint64) const override { return false; }
    const QImage *thumbnailOf(qint64 fileId) const override
    {
        askedThumbnails.insert(fileId);
        return thumbnail.isNull() ? nullptr : &thumbnail;
    }
    QMimeData *dragData(const QVector<const File *> &files) const override
    {
        QVector<qint64> ids;
        for (const File *file : files)
            ids.append(file->id());
        return IdListMime::pack(Constants::fileMimeType, ids);
    }
    bool renameFile(qint64 fileId, const QString &name) override { return note("rename", fileId, name); }
    bool describeFile(qint64 fileId, const QString &text) override { return note("describe", fileId, text); }
    bool linkTagsToFile(qint64 fileId, const QVector<qint64> &tagIds) override
    {
        return note("link", fileId, joinedTagNames(tagIds));
    }
    bool note(const char *edit, qint64 fileId, const QString &text)
    {
        calls.append("%1 %2 %3"_s.arg(QLatin1String(edit), QString::number(fileId), text));
        return true;
    }

    bool isDatabaseReadOnly = false;
    bool isReversed = false;
    qint64 renamedTag = 0;
    QHash<qint64, QString> tagNames; ///< other ones than by their ids
    QImage thumbnail;
    mutable QSet<qint64> askedThumbnails;
    QStringList calls;
};

/** The models as they stand in the program, over records that a test adds. */
struct FileModels
{
    FileModels()
    {
        contents.setHost(&host);
        filter.setSourceModel(&contents);
        sorter.setSourceModel(&filter);
    }
    /** The tester looks at all rows at each signal: seconds a test where rows are many. */
    static void addTester(QAbstractItemModel &model)
    {
        new QAbstractItemModelTester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest, &model);
    }
    QVector<qint64> shown() const
    {
        QVector<qint64> ids;
        for (int row = 0; row < sorter.rowCount(); ++row)
            ids.append(sorter.fileAt(row)->id());
        return ids;
    }

    SettingsSandbox settings;
    NotingHost host;
    FileRecords records;
    QVector<File *> files;
    ContentsModel contents;
    FileFilterModel filter;
    Sorter sorter;
};
