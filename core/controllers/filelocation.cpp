#include "core/controllers/filelocation.h"

#include "core/records/file.h"
#include "core/records/filekind.h"
#include "models/contents/contentsmodel.h"

namespace {
constexpr int rowsInSlice = 20000;

QString nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QVector<MissingFile> filesOf(const ContentsModel &contents, const QVector<qint64> &fileIds)
{
    QVector<MissingFile> files;
    files.reserve(fileIds.size());
    for (const qint64 fileId : fileIds) {
        if (const File *file = contents.fileAt(contents.rowOf(fileId)))
            files.append({fileId, file->path(), file->size(), file->checksum(), file->modificationSeconds()});
    }
    return files;
}
} // namespace

FileLocation::FileLocation(const ContentsModel &contents, const QVector<qint64> &fileIds,
                           const QStringList &folders, QObject *parent)
    : QObject(parent),
      m_contents(contents),
      m_folders(folders),
      m_locator(std::make_shared<FileLocator>(filesOf(contents, fileIds),
                                              [canceled = m_isCanceled] { return canceled->load(); })),
      m_fileIds(fileIds.cbegin(), fileIds.cend())
{
    m_sliceTimer.setInterval(0);
    connect(&m_sliceTimer, &QTimer::timeout, this, &FileLocation::excludeSlice);
}

FileLocation::~FileLocation()
{
    *m_isCanceled = true;
}

void FileLocation::start()
{
    // The locator is shared with the thread, which may be left behind on a silent disk and outlive this
    // object.
    const auto walk = [locator = m_locator, folders = m_folders](const BackgroundLooks::ShouldEnd &) {
        locator->walk(folders);
        return true;
    };
    m_looks.run(walk, [this](bool) { beginExcluding(); });
}

void FileLocation::finish()
{
    *m_isCanceled = true;
    m_sliceTimer.stop();
    m_looks.forget();
    // It may be stuck in the middle of something, on a disk that does not answer.
    m_locator->freeze();
    // A copy that nobody else writes to any more.
    m_locator = std::make_shared<FileLocator>(*m_locator);
    gatherCandidates();
    excludeRows(m_contents.rowCount());
    m_located = m_locator->locate();
}

void FileLocation::gatherCandidates()
{
    m_candidates = m_locator->candidates();
    for (const QString &path : qAsConst(m_candidates))
        m_candidateNames.insert(nameOf(path));
}

void FileLocation::beginExcluding()
{
    gatherCandidates();
    m_sliceTimer.start();
}

void FileLocation::excludeSlice()
{
    // In slices of the event loop; the records may change in between, which only makes a proposal more or
    // less, as it is looked at once more when it is written.
    excludeRows(qMin(m_nextRow + rowsInSlice, m_contents.rowCount()));
    if (m_nextRow < m_contents.rowCount())
        return;
    m_sliceTimer.stop();
    const auto decide = [locator = m_locator](const BackgroundLooks::ShouldEnd &) {
        return locator->locate();
    };
    m_looks.run(decide, [this](const QHash<qint64, QString> &located) {
        m_located = located;
        emit finished();
    });
}

void FileLocation::excludeRows(int end)
{
    QSet<QString> known;
    for (; m_nextRow < end; ++m_nextRow) {
        const File *file = m_contents.fileAt(m_nextRow);
        // The name is at hand, the path has to be put together.
        if (file->internal() != FileKind::external || !m_candidateNames.contains(file->name()) ||
            m_fileIds.contains(file->id()))
            continue;
        const QString path = file->path();
        if (m_candidates.contains(path))
            known.insert(path);
    }
    m_locator->exclude(known);
}

bool FileLocation::isOfAnother(const ContentsModel &contents, const QString &path, qint64 fileId)
{
    const QString name = nameOf(path);
    for (int row = 0; row < contents.rowCount(); ++row) {
        const File *file = contents.fileAt(row);
        if (file->internal() == FileKind::external && file->id() != fileId && file->name() == name &&
            file->path() == path)
            return true;
    }
    return false;
}
