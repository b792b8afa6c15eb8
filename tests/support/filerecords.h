#pragma once

#include "core/recordtypes.h"
#include "tests/support/text.h"

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
