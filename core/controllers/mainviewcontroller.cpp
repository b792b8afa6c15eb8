#include "core/controllers/mainviewcontroller.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/filedragdata.h"
#include "core/controllers/filerenamer.h"
#include "core/controllers/folderextraction.h"
#include "core/controllers/narrowing.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/prompts/userprompts.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "db/manager/databasemanger.h"
#include "fileops/files/startable.h"
#include "fileops/pictures/imageloading.h"
#include "fileops/provider/thumbnailcache.h"
#include "models/base/idlistmime.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QTimer>

#include <algorithm>

MainViewController::MainViewController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                       Collection *collection)
    : AbstractController(manager, constructor, collection),
      m_contents(new ContentsModel(this)),
      m_filter(new FileFilterModel(this)),
      m_sorter(new Sorter(this)),
      m_extraction(new FolderExtraction(this)),
      m_check(new ShownFilesCheck(manager, m_filter, this)),
      m_narrowing(new Narrowing(this))
{
    m_contents->setHost(this);
    m_filter->setSourceModel(m_contents);
    m_sorter->setSourceModel(m_filter);
    if (manager)
        connectManager();
}

// Proxies go before their sources, and the table before the host that it asks.
MainViewController::~MainViewController()
{
    delete m_check;
    delete m_sorter;
    delete m_filter;
    delete m_contents;
}

void MainViewController::connectManager()
{
    const DatabaseManger *source = manager();
    connect(source, &DatabaseManger::filesArrived, m_contents, &ContentsModel::prepareFiles);
    connect(source, &DatabaseManger::filesLoaded, this, &MainViewController::loadedFilesDataFromDB);
    connect(source, &DatabaseManger::filesAdded, m_contents, &ContentsModel::addFiles);
    connect(source, &DatabaseManger::filesRemoved, m_contents, &ContentsModel::removeFiles);
    connect(source, &DatabaseManger::filesChanged, m_contents, &ContentsModel::updateFiles);
    // In slices at first, one repainting at the end of all.
    connect(source, &DatabaseManger::fileTagsChanged, m_contents, &ContentsModel::updateTags);
    connect(source, &DatabaseManger::fileTagsSettled, m_contents, &ContentsModel::showTags);
    connect(source, &DatabaseManger::updateMissedFiles, m_contents, &ContentsModel::repaintFiles);
    connect(source, &DatabaseManger::updateMissedFiles, this, &MainViewController::missingFilesChanged);
    connect(source, &DatabaseManger::thumbnailUpdated, m_contents, &ContentsModel::repaintFile);
    connect(source, &DatabaseManger::remadeAllThumbnails, m_contents, &ContentsModel::repaintAll);
    connect(source, &DatabaseManger::aboutToReloadAllData, m_contents, &ContentsModel::clear);
    connect(source, &DatabaseManger::allDataReloaded, this, &MainViewController::forgetGoneTags);
    connect(source, &DatabaseManger::allDataReloaded, m_check, &ShownFilesCheck::start);
    connect(source, &DatabaseManger::tagsLoaded, m_sorter, &Sorter::refreshTagNames);
    connect(source, &DatabaseManger::tagsRenamed, m_sorter, &Sorter::renameTags);
    connect(source, &DatabaseManger::startedAddingFiles, this, &MainViewController::startedAddingFiles);
    connect(source, &DatabaseManger::addingFilesProgress, this, &MainViewController::addingFilesProgress);
    connect(source, &DatabaseManger::finishedAddingFiles, this, &MainViewController::finishedAddingFiles);
    connect(source, &DatabaseManger::additionSettled, this, &MainViewController::additionSettled);
    connect(source, &DatabaseManger::filesModified, this, &MainViewController::filesModified);
    connect(m_extraction, &FolderExtraction::started, this, &MainViewController::startedAddingFiles);
    connect(m_extraction, &FolderExtraction::progress, this, &MainViewController::addingFilesProgress);
    connect(m_extraction, &FolderExtraction::finished, this, &MainViewController::finishedAddingFiles);
    connect(source, &DatabaseManger::extractedTempFiles, this, &MainViewController::gotExtractedTempFiles);
}

void MainViewController::setPeers(TagsController *tags, BrowsTreeController *browsTree,
                                  RelationsController *relations)
{
    m_tags = tags;
    m_browsTree = browsTree;
    m_relations = relations;
    m_narrowing->setPeers(tags, browsTree, relations);
}

void MainViewController::load()
{
    if (manager())
        manager()->loadAllFiles();
}

void MainViewController::readSettings()
{
    // How long a file counts as new is one of the settings.
    if (m_filter->nodeType() == RecentlyAddedFiles)
        m_filter->setSpecialNode(RecentlyAddedFiles);
}

void MainViewController::loadedFilesDataFromDB(const Map<qint64, File *> &files)
{
    m_contents->loadFiles(files);
}

void MainViewController::showSpecialNode(NodeType type)
{
    // Before the filter changes, so that a million rows are sorted and searched once and not twice.
    m_sorter->prepareFilterText(QString());
    m_filter->setSpecialNode(type);
    emit tagRequirementsChanged(type, {}, {}, {});
    m_check->start();
}

void MainViewController::showTagRequirements(const QVector<qint64> &required, const QVector<qint64> &eitherOr,
                                             const QVector<qint64> &excluded,
                                             const QHash<qint64, QVector<qint64>> &requiredAlternatives,
                                             const QVector<qint64> &eitherOrWidened,
                                             const QVector<qint64> &excludedWidened)
{
    showRequirements({required, eitherOr, excluded, requiredAlternatives, eitherOrWidened, excludedWidened});
}

void MainViewController::showRequirements(const TagRequirements &requirements)
{
    m_sorter->prepareFilterText(QString());
    m_filter->setTagRequirements(requirements);
    emit tagRequirementsChanged(TagNode, requirements.required, requirements.eitherOr, requirements.excluded);
    m_check->start();
}

void MainViewController::setFileFilterString(const QString &text)
{
    qDebug() << "MainViewController::setFileFilterString()";
    if (m_browsTree)
        m_browsTree->clearCurrentNode();
    if (m_tags)
        m_tags->clearMark();
    m_sorter->prepareFilterText(text);
    m_filter->setSpecialNode(AllFiles);
    emit tagRequirementsChanged(AllFiles, {}, {}, {});
    m_check->start();
}

void MainViewController::showTagsSelected(const QVector<qint64> &tagIds)
{
    TagRequirements requirements;
    requirements.required = tagIds;
    if (m_relations)
        requirements.requiredAlternatives = m_relations->descendantsOfEach(tagIds);
    showRequirements(requirements);
    if (m_browsTree)
        m_browsTree->clearCurrentNode();
}

void MainViewController::showTagsEitherOr(const QVector<qint64> &tagIds)
{
    showRequirements(requirementsOfAny(tagIds));
    if (m_browsTree)
        m_browsTree->clearCurrentNode();
}

TagRequirements MainViewController::requirementsOfAny(const QVector<qint64> &tagIds) const
{
    TagRequirements requirements;
    requirements.eitherOr = tagIds;
    if (m_relations)
        requirements.eitherOrWidened = m_relations->descendantsOf(tagIds);
    return requirements;
}

void MainViewController::showRelated(const QVector<qint64> &fileIds)
{
    const File *file = m_contents->fileAt(fileIds.isEmpty() ? -1 : m_contents->rowOf(fileIds.first()));
    if (!file)
        return;
    const QVector<qint64> tagIds = file->tags();
    // The tags are marked in their table, as if they had been chosen there.
    if (m_tags)
        // This comes back here by way of the tags.
        m_tags->showTagsSelected(tagIds);
    else
        showTagsSelected(tagIds);
}

QVector<qint64> MainViewController::shownFileIds() const
{
    return m_filter->acceptedFiles();
}

void MainViewController::addUrls(const QList<QUrl> &urls, const QVector<qint64> &tagIds,
                                 bool fromSelectedNode, qint64 nodeId)
{
    // One that is not valid has no text, and is told of as such.
    QStringList paths;
    for (const QUrl &url : urls)
        paths.append(url.isLocalFile() ? url.toLocalFile() : url.toString());
    if (manager() && !paths.isEmpty() && mayEdit())
        manager()->addFiles(paths, tagIds, fromSelectedNode, nodeId);
}

bool MainViewController::addHyperlink(const QString &text, const QString &description,
                                      const QVector<qint64> &tagIds)
{
    QHash<QString, QString> details;
    if (!description.isEmpty())
        details.insert(QStringLiteral("file_description"), description);
    return manager() && mayEdit() && manager()->addFiles({text}, tagIds, false, 0, details);
}

bool MainViewController::addFilesList(const QStringList &paths)
{
    return paths.isEmpty() || (manager() && mayEdit() && manager()->addFilesList(paths));
}

void MainViewController::locateFiles(const QHash<qint64, QString> &paths)
{
    QMap<qint64, QString> places;
    for (auto it = paths.cbegin(); it != paths.cend(); ++it)
        places.insert(it.key(), it.value());
    if (manager() && !places.isEmpty() && mayEdit())
        manager()->locateFiles(places);
}

void MainViewController::deleteFiles(const QVector<qint64> &fileIds)
{
    if (manager() && !fileIds.isEmpty() && mayEdit())
        manager()->deleteFiles(fileIds);
}

void MainViewController::deleteMissingFiles(const QVector<qint64> &fileIds)
{
    if (manager() && !fileIds.isEmpty() && mayEdit())
        manager()->deleteMissingFiles(fileIds);
}

void MainViewController::transferToInternal(const QVector<qint64> &fileIds)
{
    QVector<qint64> external;
    for (const qint64 fileId : fileIds) {
        const File *file = m_contents->fileAt(m_contents->rowOf(fileId));
        // The others have their contents where they belong, or none.
        if (file && file->internal() == FileKind::external)
            external.append(fileId);
    }
    if (manager() && !external.isEmpty() && mayEdit())
        manager()->transferFiles(external);
}

void MainViewController::extractFiles(const QString &folder, const QVector<qint64> &fileIds)
{
    if (folder.isEmpty() || !manager())
        return;
    const QString target = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    WindowSettings::setLastExtractDir(target);
    m_extraction->run(manager(), target, fileIds, prompts());
}

void MainViewController::exportDatabase(const ExportRequest &request)
{
    if (manager())
        manager()->exportDatabase(request);
}

void MainViewController::setFileConflictAsker(const FileConflictAsker &asker)
{
    m_extraction->setConflictAsker(asker);
}

void MainViewController::openTemporaryCopy(qint64 fileId)
{
    const File *file = manager() ? manager()->file(fileId) : nullptr;
    if (!file || file->internal() != FileKind::internal)
        return;
    // Counted, as the answer tells nothing but the path, and none at all of a failure.
    ++m_awaitedCopies;
    manager()->extractToTemporary(fileId);
}

void MainViewController::remakeThumbnails()
{
    if (manager() && mayEdit())
        manager()->remakeThumbnails();
}

void MainViewController::importDatabase(const QString &source, bool isShell, const ImportOptions &options)
{
    if (manager() && mayEdit())
        manager()->importDatabase(source, isShell, options);
}

void MainViewController::cancelOperations()
{
    m_awaitedCopies = 0;
    m_extraction->cancel();
    if (manager())
        manager()->cancelOperations();
}

bool MainViewController::changeTags(const QVector<qint64> &fileIds, const QVector<qint64> &linked,
                                    const QVector<qint64> &unlinked)
{
    if (fileIds.isEmpty() || (linked.isEmpty() && unlinked.isEmpty()))
        return true;
    return manager() && mayEdit() && manager()->changeTags(fileIds, linked, unlinked);
}

void MainViewController::linkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    changeTags(fileIds, knownTags(tagIds), {});
}

void MainViewController::unlinkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    changeTags(fileIds, {}, tagIds);
}

bool MainViewController::updateFileDescription(qint64 fileId, const QString &text)
{
    const File *file = manager() ? manager()->file(fileId) : nullptr;
    if (!file || text == file->description() || !mayEdit())
        return false;
    return manager()->updateFile(fileId, QStringLiteral("file_description"), text);
}

std::unique_ptr<ImageLoading> MainViewController::loadImage(qint64 fileId)
{
    return manager() ? manager()->loadImage(fileId)
                     : std::make_unique<ImageLoading>(StoredImage::UnknownFile);
}

StoredImage::Saving MainViewController::saveImage(qint64 fileId, const QImage &picture)
{
    return manager() && mayEdit() ? manager()->saveImage(fileId, picture) : StoredImage::Refused;
}

void MainViewController::reloadThumbnail(qint64 fileId)
{
    if (manager())
        manager()->thumbnailCache()->reloadThumbnail(fileId);
}

void MainViewController::forgetGoneTags()
{
    // Tags may have gone with a reload, which names none of them.
    QVector<qint64> tagIds = m_filter->requirements().allTags();
    const auto isThere = [this](qint64 tagId) { return manager()->hasTag(tagId); };
    tagIds.erase(std::remove_if(tagIds.begin(), tagIds.end(), isThere), tagIds.end());
    if (!tagIds.isEmpty())
        forgetTags(tagIds);
}

void MainViewController::forgetTags(const QVector<qint64> &removedTags)
{
    if (m_filter->nodeType() != TagNode)
        return;
    TagRequirements requirements = m_filter->requirements();
    const TagRequirements::Change change = requirements.forget({removedTags.cbegin(), removedTags.cend()});
    if (change == TagRequirements::LessAsked)
        showRequirements(requirements);
    else if (change == TagRequirements::LessWidened)
        m_filter->setTagRequirements(requirements);
}

QVariant MainViewController::fileData(qint64 fileId, DataType type) const
{
    const File *file = m_contents->fileAt(m_contents->rowOf(fileId));
    return file ? file->data(type) : QVariant();
}

QString MainViewController::tagNames(const QVector<qint64> &tagIds) const
{
    QStringList names;
    names.reserve(tagIds.size());
    for (qint64 tagId : tagIds) {
        const QString name = m_tags ? m_tags->tagName(tagId) : QString();
        if (!name.isEmpty())
            names.append(name);
    }
    return names.join(QLatin1String(", "));
}

void MainViewController::gotExtractedTempFiles(const QVector<QPair<qint64, QString>> &files)
{
    // Of a copy that failed there is no other news, and of one that was cancelled nobody wants any.
    const bool isAwaited = m_awaitedCopies > 0;
    m_awaitedCopies -= isAwaited ? 1 : 0;
    // This object may be gone by the end of a box.
    UserPrompts &shown = prompts();
    const auto warn = [&shown](const QString &text) {
        shown.tell(UserPrompts::Warning, tr("Error opening file"), text);
    };
    if (files.isEmpty() && isAwaited)
        warn(tr("The file could not be copied out of the database into the folder for temporary "
                "files, %1. It may be full or write-protected.")
                 .arg(QDir::toNativeSeparators(QDir::tempPath())));
    bool isOpened = true;
    for (const auto &file : files) {
        // Its name was looked at before; what it holds is to be seen only now.
        if (Startable::verdictOn(file.second) == Startable::Harmless)
            isOpened = QDesktopServices::openUrl(QUrl::fromLocalFile(file.second)) && isOpened;
        else
            warn(tr("This file would start a program, which Vorna does not do out of a database. Extract it "
                    "if you trust it, and start it from there."));
    }
    if (!isOpened)
        warn(tr("Vorna is unable to open this file. There may not be any application associated with the "
                "file type."));
}

QString MainViewController::joinedTagNames(const QVector<qint64> &tagIds) const
{
    // As many as are shown: a file may have any number of tags.
    QString names;
    for (const qint64 tagId : tagIds) {
        const QString name = m_tags ? m_tags->tagName(tagId) : QString();
        if (!name.isEmpty())
            names += (names.isEmpty() ? QString() : QStringLiteral(", ")) + name;
        if (names.size() > ShownText::mostSigns)
            return names + QChar(0x2026);
    }
    return names;
}

bool MainViewController::isFileMissing(qint64 fileId) const
{
    return manager() && manager()->isMissing(fileId);
}

void MainViewController::keepThumbnails(int count)
{
    if (manager())
        manager()->thumbnailCache()->setLeast(count);
}

const QImage *MainViewController::thumbnailOf(qint64 fileId) const
{
    return manager() ? manager()->thumbnailCache()->thumbnail(fileId) : nullptr;
}

QMimeData *MainViewController::dragData(const QVector<const File *> &files) const
{
    return manager() ? new FileDragData(files, manager()) : nullptr;
}

bool MainViewController::renameFile(qint64 fileId, const QString &name)
{
    const FileRenamer renamer(manager(), prompts());
    const FileRenamer::Outcome outcome = renamer.tryRename(fileId, name);
    if (outcome != FileRenamer::Renamed && outcome != FileRenamer::Unchanged) {
        // The editor that the name was typed in must be gone before a box comes up.
        QTimer::singleShot(0, this,
                           [renamer, outcome, fileId, name] { renamer.settle(outcome, fileId, name); });
    }
    return outcome == FileRenamer::Renamed;
}

bool MainViewController::describeFile(qint64 fileId, const QString &description)
{
    return updateFileDescription(fileId, description);
}

bool MainViewController::linkTagsToFile(qint64 fileId, const QVector<qint64> &tagIds)
{
    return manager() && mayEdit() && manager()->linkTags({fileId}, tagIds);
}
