#include "fileops/importing/contentgroups.h"

#include "core/records/filekind.h"
#include "fileops/duplicates/duplicatechoice.h"
#include "fileops/importing/importrun.h"
#include "fileops/importing/sourcefiles.h"

#include <QDebug>
#include <QHash>
#include <QStringList>

#include <algorithm>

namespace {
constexpr int contentGroup = 1;
// Of one checksum and size. What belongs to none of these is told by a hash, as pairs of very many take too
// long.
constexpr int mostCompared = 16;

} // namespace

void ContentGroups::createTables(ImportRun &run)
{
    for (const char *table : {"mem_groups", "mem_external_file_group", "mem_internal_file_group", "mem_keys",
                              "mem_own_files", "mem_paths", "mem_path_owners"})
        run.statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.") + QLatin1String(table));
    for (const char *table :
         {"mem_groups (group_id INTEGER PRIMARY KEY, group_type INTEGER NOT NULL)",
          "mem_external_file_group (file_id INTEGER NOT NULL, group_id INTEGER NOT NULL, "
          "PRIMARY KEY(file_id, group_id)) WITHOUT ROWID",
          "mem_internal_file_group (group_id INTEGER NOT NULL, file_id INTEGER NOT NULL, "
          "PRIMARY KEY(group_id, file_id)) WITHOUT ROWID",
          "mem_keys (data_checksum INTEGER NOT NULL, file_size INTEGER NOT NULL, "
          "PRIMARY KEY(data_checksum, file_size)) WITHOUT ROWID",
          "mem_paths (path TEXT NOT NULL, file_id INTEGER NOT NULL, PRIMARY KEY(path, file_id)) WITHOUT "
          "ROWID",
          "mem_path_owners (file_id INTEGER PRIMARY KEY, own_file_id INTEGER NOT NULL)",
          "mem_own_files (data_checksum INTEGER NOT NULL, file_size INTEGER NOT NULL, kind INTEGER NOT NULL, "
          "file_id INTEGER NOT NULL, storage_id INTEGER NOT NULL, "
          "PRIMARY KEY(data_checksum, file_size, file_id)) WITHOUT ROWID"})
        run.statements.run(QStringLiteral("CREATE TEMPORARY TABLE ") + QLatin1String(table));
}

void ContentGroups::group()
{
    qDebug("Grouping content duplicates...\n");
    qDebug("DuplicateManager::groupContentDuplicates(idList)");
    nominate();
    findPathOwners();
    qDebug("Grouping checksum matches...\n");
    qDebug(" ie. groupAllChecksumMatches(idList,idList)");
    // Those of the open database come first, so that files of the source join them.
    m_run.statements.each(
        QStringLiteral(
            "SELECT data_checksum, file_size, 0 AS side, file_id, kind, storage_id FROM mem_own_files "
            "UNION ALL SELECT m.data_checksum, m.file_size, 1, m.file_id, m.internal, m.storage_id "
            "FROM mem_keys AS k JOIN mem_files AS m "
            "ON m.data_checksum=k.data_checksum AND m.file_size=k.file_size ORDER BY 1, 2, 3, 4"),
        [this](const ImportStatements::Row &row) {
            m_run.stopIfEnded();
            take({row.number(2) == 1, row.number(3), row.number(4), row.number(5)},
                 {row.number(0), row.number(1)});
        });
    settle();
    qDebug("Getting non-duplicates...\n");
    qDebug("DuplicateManager::getNonDuplicates()");
    joinPathOwners();
}

void ContentGroups::findPathOwners()
{
    const bool hasPaths = m_run.source.has({QStringLiteral("file_paths")});
    if (m_run.isShell || !hasPaths ||
        m_run.statements.number(QStringLiteral("SELECT EXISTS (SELECT 1 FROM main.file_paths)")) == 0)
        return;
    m_run.statements.run(
        QStringLiteral("INSERT INTO mem_paths (path,file_id) SELECT CAST(p.path AS TEXT), m.file_id "
                       "FROM mem_files AS m CROSS JOIN fileSource.file_paths AS p ON p.path_id=m.storage_id "
                       "WHERE m.internal=0 AND length(p.path)>0"));
    m_run.statements.run(QStringLiteral("INSERT OR IGNORE INTO mem_path_owners (file_id,own_file_id) "
                                        "SELECT m.file_id, f.file_id FROM main.files AS f "
                                        "CROSS JOIN main.file_paths AS p ON p.path_id=f.storage_id "
                                        "CROSS JOIN mem_paths AS m ON m.path=p.path WHERE f.internal=0"));
}

void ContentGroups::joinPathOwners()
{
    m_run.statements.each(QStringLiteral("SELECT o.file_id, o.own_file_id FROM mem_path_owners AS o "
                                         "CROSS JOIN mem_files AS m ON m.file_id=o.file_id WHERE m.fate=0"),
                          [this](const ImportStatements::Row &row) {
                              m_run.stopIfEnded();
                              writePair(row.number(0), row.number(1));
                          });
}

qint64 ContentGroups::pathOwner(const File &file)
{
    return m_run.statements.number(QStringLiteral("SELECT own_file_id FROM mem_path_owners WHERE file_id=?"),
                                   {file.fileId});
}

void ContentGroups::writePair(qint64 fileId, qint64 ownFileId)
{
    m_run.report.count(ImportReport::KnownFiles);
    write({{false, ownFileId}, {true, fileId}});
}

void ContentGroups::nominate()
{
    SourceFiles source(m_run);
    const bool isEmpty =
        m_run.statements.number(QStringLiteral("SELECT EXISTS (SELECT 1 FROM main.files)")) == 0;
    // To sort once is cheaper than an index, which a new database may have no use for.
    if (!isEmpty)
        source.createIndex();
    m_run.statements.run(QStringLiteral(
        "INSERT OR IGNORE INTO mem_own_files (data_checksum,file_size,kind,file_id,storage_id) "
        "SELECT f.data_checksum, f.file_size, f.internal, f.file_id, f.storage_id FROM main.files AS f "
        "WHERE f.data_checksum>=0 AND EXISTS (SELECT 1 FROM mem_files AS m "
        "WHERE m.data_checksum=f.data_checksum AND m.file_size=f.file_size)"));
    m_run.statements.run(QStringLiteral("INSERT OR IGNORE INTO mem_keys (data_checksum,file_size) "
                                        "SELECT data_checksum, file_size FROM mem_own_files"));
    m_run.statements.run(QStringLiteral("INSERT OR IGNORE INTO mem_keys (data_checksum,file_size) "
                                        "SELECT data_checksum, file_size FROM mem_files "
                                        "WHERE data_checksum>=0 GROUP BY 1, 2 HAVING count(*)>1"));
    if (isEmpty && m_run.statements.number(QStringLiteral("SELECT EXISTS (SELECT 1 FROM mem_keys)")) != 0)
        source.createIndex();
}

void ContentGroups::take(const File &file, const Contents &contents)
{
    if (contents.checksum != m_current.checksum || contents.size != m_current.size) {
        settle();
        m_current = contents;
    }
    const int place = placeOf(file);
    Group &group = place >= 0 ? m_groups[place] : (m_groups.append(Group()), m_groups.last());
    group.files.append(file);
    group.ofSource += file.isOfSource ? 1 : 0;
    if (file.kind == FileKind::internal && !group.hasInternal) {
        group.internal = file;
        group.hasInternal = true;
    }
}

int ContentGroups::placeOf(const File &file)
{
    for (int i = 0; i < qMin(m_groups.size(), mostCompared); ++i) {
        m_run.stopIfEnded();
        if (fits(m_groups.at(i), file))
            return i;
    }
    if (m_groups.size() < mostCompared)
        return -1;
    const QByteArray key = identity(file);
    const auto known = m_placesByIdentity.constFind(key);
    if (known != m_placesByIdentity.cend())
        return *known;
    if (!key.isEmpty())
        m_placesByIdentity.insert(key, m_groups.size());
    return -1;
}

QByteArray ContentGroups::identity(const File &file)
{
    if (file.kind == FileKind::hyperlink)
        return 'l' + textOf(file, "file_name").toUtf8();
    if (m_current.size == 0)
        return QByteArrayLiteral("empty");
    const bool isInternal = file.kind == FileKind::internal;
    if (m_run.isShell && isInternal)
        return QByteArrayLiteral("internal");
    const QByteArray hash = m_run.isShell ? QByteArray() : m_contents.hashOf(sideOf(file));
    if (!hash.isEmpty())
        return 'h' + hash;
    const QString path = isInternal ? QString() : pathOf(file);
    return path.isEmpty() ? QByteArray() : 'p' + path.toUtf8();
}

bool ContentGroups::fits(const Group &group, const File &file)
{
    // Bytes that the databases hold say more than a path does.
    return isSame(group.hasInternal ? group.internal : group.files.first(), file);
}

bool ContentGroups::isSame(const File &one, const File &other)
{
    const bool isLink = one.kind == FileKind::hyperlink;
    if (isLink || other.kind == FileKind::hyperlink)
        return isLink && other.kind == FileKind::hyperlink &&
               textOf(one, "file_name") == textOf(other, "file_name");
    if (m_current.size == 0)
        return true;
    const bool areInternal = one.kind == FileKind::internal && other.kind == FileKind::internal;
    const bool isKnownPath =
        one.kind == FileKind::external && other.kind == FileKind::external && pathOf(one) == pathOf(other);
    if (isKnownPath || m_run.isShell)
        return isKnownPath || m_current.checksum != 0 || areInternal;
    const ContentComparison::Result result = m_contents.compare(sideOf(one), sideOf(other));
    // Blocks that are missing are a damage, a path without a file is usual. No checksum at all is written
    // as 0.
    return result == ContentComparison::Same ||
           (result == ContentComparison::Unreadable && !areInternal && m_current.checksum != 0);
}

ContentComparison::Side ContentGroups::sideOf(const File &file)
{
    const bool isInternal = file.kind == FileKind::internal;
    return {file.isOfSource, isInternal, file.storageId, m_current.size,
            isInternal ? QString() : pathOf(file)};
}

QString ContentGroups::textOf(const File &file, const char *column)
{
    QString text;
    const QString statement = QStringLiteral("SELECT %1 FROM %2.files WHERE file_id=?");
    m_run.statements.each(statement.arg(QLatin1String(column), file.isOfSource ? QStringLiteral("fileSource")
                                                                               : QStringLiteral("main")),
                          {file.fileId}, [&](const ImportStatements::Row &row) { text = row.text(0); });
    return text;
}

QString ContentGroups::pathOf(const File &file)
{
    QString path;
    if (file.isOfSource && !m_run.source.has({QStringLiteral("file_paths")}))
        return path;
    m_run.statements.each(file.isOfSource
                              ? QStringLiteral("SELECT path FROM fileSource.file_paths WHERE path_id=?")
                              : QStringLiteral("SELECT path FROM main.file_paths WHERE path_id=?"),
                          {file.storageId}, [&](const ImportStatements::Row &row) { path = row.text(0); });
    return path;
}

void ContentGroups::settle()
{
    for (Group &group : m_groups) {
        const bool isHere = group.files.size() > group.ofSource;
        if (isHere && group.ofSource > 0)
            writeKnown(group);
        else if (group.ofSource > 1 && m_isAdding)
            keepOne(group);
    }
    m_groups.clear();
    m_placesByIdentity.clear();
}

void ContentGroups::writeKnown(const Group &group)
{
    m_run.report.count(ImportReport::KnownFiles, group.ofSource);
    if (group.files.size() == 2) {
        write(group.files);
        return;
    }
    // One of several copies here may be the very file that the source has. It takes what that one has, and
    // not what its copies have.
    QHash<QString, File> ownByCode;
    QVector<File> rest;
    for (const File &file : group.files) {
        if (!file.isOfSource) {
            ownByCode.insert(textOf(file, "id_code"), file);
            rest.append(file);
        }
    }
    const int own = rest.size();
    for (const File &file : group.files) {
        const auto same =
            file.isOfSource ? ownByCode.constFind(textOf(file, "id_code")) : ownByCode.constEnd();
        if (same != ownByCode.constEnd())
            write({*same, file});
        else if (file.isOfSource)
            rest.append(file);
    }
    if (rest.size() > own)
        write(rest);
}

void ContentGroups::write(const QVector<File> &files)
{
    ++m_lastGroup;
    m_run.statements.run(QStringLiteral("INSERT INTO mem_groups (group_id,group_type) VALUES (?,?)"),
                         {m_lastGroup, contentGroup});
    for (const File &file : files) {
        if (file.isOfSource) {
            m_run.statements.run(
                QStringLiteral("INSERT INTO mem_external_file_group (file_id,group_id) VALUES (?,?)"),
                {file.fileId, m_lastGroup});
            m_run.statements.run(QStringLiteral("UPDATE mem_files SET fate=? WHERE file_id=?"),
                                 {int(SourceFiles::IsKnown), file.fileId});
        } else {
            m_run.statements.run(
                QStringLiteral("INSERT INTO mem_internal_file_group (group_id,file_id) VALUES (?,?)"),
                {m_lastGroup, file.fileId});
        }
    }
}

void ContentGroups::keepOne(Group &group)
{
    const auto isOwned = [this](const File &file) {
        const qint64 owner = pathOwner(file);
        if (owner > 0)
            writePair(file.fileId, owner);
        return owner > 0;
    };
    group.files.erase(std::remove_if(group.files.begin(), group.files.end(), isOwned), group.files.end());
    if (group.files.size() < 2)
        return;
    write(group.files);
    // A path may lead nowhere here: where there are contents, they come along.
    QVector<File> candidates;
    QStringList names;
    for (const File &file : group.files) {
        if (!group.hasInternal || file.kind == FileKind::internal) {
            candidates.append(file);
            names.append(textOf(file, "file_name"));
        }
    }
    const int kept = names.indexOf(chooseFileToKeep(names));
    m_run.statements.run(QStringLiteral("UPDATE mem_files SET fate=? WHERE file_id=?"),
                         {int(SourceFiles::IsNew), candidates.at(qMax(0, kept)).fileId});
    m_run.report.leaveOut(tr("Files of the same contents as another one, which has their tags: %1"),
                          group.files.size() - 1);
}

void ContentGroups::noteAdded(ImportRun &run)
{
    run.statements.run(QStringLiteral("INSERT OR IGNORE INTO mem_internal_file_group (group_id,file_id) "
                                      "SELECT ex.group_id, a.new_file_id FROM mem_added AS a "
                                      "JOIN mem_external_file_group AS ex ON ex.file_id=a.file_id"));
}
