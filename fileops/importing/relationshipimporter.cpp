#include "fileops/importing/relationshipimporter.h"

#include "fileops/importing/importrun.h"

#include <QDebug>

#include <algorithm>

namespace {
constexpr QLatin1Char dot('.');
// Each of a path's prefixes is a row of its own: a path that is longer by far would fill the disk with them.
constexpr int mostLevels = 2000;
// Each place may bring a whole tree along: places of trees at places of trees would fill it, too.
constexpr int mostAddedBelow = 1000000;

QString textOf(const QVector<qint64> &path)
{
    QStringList pieces;
    for (const qint64 id : path)
        pieces.append(QString::number(id));
    return pieces.join(dot);
}

QVector<qint64> pathOf(const QString &text)
{
    QVector<qint64> path;
    for (const QStringRef &piece : text.splitRef(dot))
        path.append(piece.toLongLong());
    return path;
}

/** A tag that stands above itself. */
bool isCircle(const QVector<qint64> &path)
{
    return QSet<qint64>(path.cbegin(), path.cend()).size() < path.size();
}
} // namespace

void RelationshipImporter::importRelationships()
{
    qDebug("Importing tag relationships...");
    if (!m_run.source.has({QStringLiteral("tag_relationships")}))
        return;
    readTags();
    readExisting();
    // Parents before children.
    m_run.statements.each(
        QStringLiteral("SELECT CAST(relationship_path AS TEXT) FROM fileSource.tag_relationships "
                       "ORDER BY length(relationship_path), relationship_path"),
        [this](const ImportStatements::Row &row) { importPath(row.text(0)); });
    m_sorted = QStringList(m_known.cbegin(), m_known.cend());
    std::sort(m_sorted.begin(), m_sorted.end());
    for (const auto &place : qAsConst(m_newPlaces))
        addBelow(place.first, place.second);
}

void RelationshipImporter::readTags()
{
    m_run.statements.each(
        QStringLiteral("SELECT old_tag_id, new_tag_id FROM migrationDB_tags"),
        [this](const ImportStatements::Row &row) { m_newTagIds.insert(row.number(0), row.number(1)); });
}

void RelationshipImporter::readExisting()
{
    m_run.statements.each(QStringLiteral("SELECT relationship_path FROM main.tag_relationships"),
                          [this](const ImportStatements::Row &row) {
                              const QString path = row.text(0);
                              m_known.insert(path);
                              m_places[path.mid(path.lastIndexOf(dot) + 1).toLongLong()].append(path);
                          });
}

void RelationshipImporter::importPath(const QString &text)
{
    Path components;
    if (!readPath(text, components)) {
        m_run.report.leaveOut(tr("Tag relationships that are none: %1"), 1);
        return;
    }
    // The path of a tag that does not come along: those of the tags below it come without it.
    if (!m_newTagIds.contains(components.last()))
        return;
    const Path path = mapped(components);
    if (m_known.contains(textOf(path)))
        return;
    const QStringList places = m_places.value(path.first());
    if (places.isEmpty()) {
        addWithPrefixes(path);
        return;
    }
    for (const QString &place : places) {
        m_run.stopIfEnded();
        qDebug() << "Plonk tree with trunk" << path.first() << "at" << place;
        qDebug() << "Adding path of components" << path << "onto internal prefix of components" << place;
        addWithPrefixes(pathOf(place) + path.mid(1));
    }
}

bool RelationshipImporter::readPath(const QString &text, Path &components) const
{
    const QVector<QStringRef> pieces = text.splitRef(dot);
    if (pieces.size() > mostLevels)
        return false;
    for (const QStringRef &piece : pieces) {
        bool isNumber = false;
        components.append(piece.toLongLong(&isNumber));
        if (!isNumber)
            return false;
    }
    return true;
}

RelationshipImporter::Path RelationshipImporter::mapped(const Path &components) const
{
    Path path;
    for (const qint64 oldId : components) {
        const auto newId = m_newTagIds.constFind(oldId);
        if (newId != m_newTagIds.cend())
            path.append(*newId);
        else
            qDebug("************  importExternalChildren(): Error importing tag to put in TR structure.");
    }
    return path;
}

void RelationshipImporter::addWithPrefixes(const Path &path)
{
    if (isCircle(path)) {
        m_run.report.leaveOut(tr("Tag relationships by which a tag would stand below itself: %1"), 1);
        return;
    }
    QString prefix;
    for (const qint64 id : path) {
        prefix += (prefix.isEmpty() ? QString() : QString(dot)) + QString::number(id);
        if (m_known.contains(prefix))
            continue;
        qDebug() << "Resultant complete path:" << prefix;
        add(prefix);
        if (m_places.contains(id))
            m_newPlaces.append({prefix, id});
    }
}

void RelationshipImporter::addBelow(const QString &place, qint64 tagId)
{
    const QString top = m_places.value(tagId).constFirst() + dot;
    for (auto path = std::lower_bound(m_sorted.cbegin(), m_sorted.cend(), top);
         path != m_sorted.cend() && path->startsWith(top); ++path) {
        m_run.stopIfEnded();
        const QString below = place + dot + path->mid(top.size());
        if (m_known.contains(below) || isCircle(pathOf(below)))
            continue;
        if (m_addedBelow == mostAddedBelow) {
            m_run.report.leaveOut(tr("Tag relationships beyond the first million: %1"), 1);
            return;
        }
        ++m_addedBelow;
        add(below);
    }
}

void RelationshipImporter::add(const QString &path)
{
    m_known.insert(path);
    m_run.statements.run(QStringLiteral("INSERT INTO main.tag_relationships (relationship_path) VALUES (?)"),
                         {path});
    m_run.report.count(ImportReport::Relationships);
}
