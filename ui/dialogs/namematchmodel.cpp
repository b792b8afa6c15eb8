#include "ui/dialogs/namematchmodel.h"

#include "app/settings/showntext.h"

#include <QLocale>

#include <algorithm>

NameMatchModel::NameMatchModel(const QVector<DuplicateMatch> &matches, QObject *parent)
    : QAbstractTableModel(parent), m_matches(matches)
{
    m_firstRows.reserve(m_matches.size());
    m_firstChoices.reserve(m_matches.size());
    int choices = 0;
    for (const DuplicateMatch &match : qAsConst(m_matches)) {
        m_firstRows.append(m_rowCount);
        m_firstChoices.append(choices);
        m_rowCount += 1 + match.addedFiles.size() + match.databaseFiles.size();
        choices += match.addedFiles.size();
    }
    m_isChosen = QBitArray(choices, true);
}

int NameMatchModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int NameMatchModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

NameMatchModel::Place NameMatchModel::placeOf(int row) const
{
    const auto next = std::upper_bound(m_firstRows.cbegin(), m_firstRows.cend(), row);
    const int match = int(next - m_firstRows.cbegin()) - 1;
    return {match, row - m_firstRows.at(match)};
}

const DuplicateFileInfo *NameMatchModel::fileAt(const Place &place) const
{
    const DuplicateMatch &match = m_matches.at(place.match);
    const int added = match.addedFiles.size();
    if (place.number == 0)
        return nullptr;
    return place.number <= added ? &match.addedFiles.at(place.number - 1)
                                 : &match.databaseFiles.at(place.number - 1 - added);
}

int NameMatchModel::choiceAt(const Place &place) const
{
    const bool isChoice = place.number > 0 && place.number <= m_matches.at(place.match).addedFiles.size();
    return isChoice ? m_firstChoices.at(place.match) + place.number - 1 : -1;
}

QStringRef NameMatchModel::nameOf(int match) const
{
    const QVector<DuplicateFileInfo> &files = m_matches.at(match).addedFiles;
    if (files.isEmpty())
        return {};
    const QString &path = files.first().path;
    // The name of a hyperlink is the whole of it.
    return files.first().isFile() ? path.midRef(path.lastIndexOf(QLatin1Char('/')) + 1) : QStringRef(&path);
}

QString NameMatchModel::text(const Place &place, int column) const
{
    const DuplicateFileInfo *file = fileAt(place);
    if (column == FileColumn) {
        if (!file)
            return ShownText::cut(nameOf(place.match).toString());
        return ShownText::cut(choiceAt(place) < 0 ? tr("Database file: %1").arg(file->path) : file->path);
    }
    if (!file || !file->isFile())
        return {};
    return column == SizeColumn ? QLocale().toString(file->size)
                                : QLocale().toString(file->lastModified, QLocale::ShortFormat);
}

QVariant NameMatchModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rowCount)
        return {};
    const Place place = placeOf(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(place, index.column());
    case Qt::TextAlignmentRole:
        return index.column() == SizeColumn ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter)) : QVariant();
    case Qt::CheckStateRole: {
        const int choice = index.column() == FileColumn ? choiceAt(place) : -1;
        return choice < 0 ? QVariant() : QVariant(m_isChosen.testBit(choice) ? Qt::Checked : Qt::Unchecked);
    }
    default:
        return {};
    }
}

bool NameMatchModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!flags(index).testFlag(Qt::ItemIsUserCheckable) || role != Qt::CheckStateRole)
        return false;
    m_isChosen.setBit(choiceAt(placeOf(index.row())), value.toInt() == Qt::Checked);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant NameMatchModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case FileColumn:
        return tr("File");
    case SizeColumn:
        return tr("Size");
    case DateColumn:
        return tr("Last Modified");
    default:
        return {};
    }
}

Qt::ItemFlags NameMatchModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || index.row() >= m_rowCount)
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const bool isChoice = index.column() == FileColumn && choiceAt(placeOf(index.row())) >= 0;
    return isChoice ? flags | Qt::ItemIsUserCheckable : flags;
}

QModelIndexList NameMatchModel::match(const QModelIndex &start, int role, const QVariant &value, int hits,
                                      Qt::MatchFlags flags) const
{
    Q_UNUSED(hits)
    Q_UNUSED(flags)
    const QString text = value.toString();
    if (role != Qt::DisplayRole || text.isEmpty() || m_matches.isEmpty())
        return {};
    const int row = start.isValid() ? start.row() : 0;
    const int first =
        int(std::lower_bound(m_firstRows.cbegin(), m_firstRows.cend(), row) - m_firstRows.cbegin());
    for (int tried = 0; tried < m_matches.size(); ++tried) {
        const int match = (first + tried) % m_matches.size();
        if (nameOf(match).startsWith(text, Qt::CaseInsensitive))
            return {index(m_firstRows.at(match), FileColumn)};
    }
    return {};
}

void NameMatchModel::chooseAll(bool isChosen)
{
    m_isChosen.fill(isChosen);
    if (m_rowCount > 0)
        emit dataChanged(index(0, FileColumn), index(m_rowCount - 1, FileColumn), {Qt::CheckStateRole});
}

QStringList NameMatchModel::chosenPaths() const
{
    QStringList paths;
    paths.reserve(m_isChosen.count(true));
    int choice = 0;
    for (const DuplicateMatch &match : m_matches) {
        for (const DuplicateFileInfo &file : match.addedFiles) {
            if (m_isChosen.testBit(choice++))
                paths.append(file.path);
        }
    }
    return paths;
}
