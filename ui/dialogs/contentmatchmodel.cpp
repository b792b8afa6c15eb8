#include "ui/dialogs/contentmatchmodel.h"

#include "app/settings/showntext.h"

#include <QLocale>

#include <algorithm>

namespace {

// The heading and the empty line below it.
constexpr int headingRows = 2;
constexpr int rowsOfDatabaseFile = 2;

QString dateText(const QDateTime &date)
{
    return QLocale().toString(date, QLocale::ShortFormat);
}

QString otherFileLine()
{
    return ContentMatchModel::tr("    Content matched other external file\n");
}

QString outcomeLine(const ExternalDuplicateGroup &group)
{
    const auto line = [&group] {
        switch (group.outcome) {
        case ExternalDuplicateGroup::SharesName:
            return ContentMatchModel::tr("Content matched %1, which is one of the name matches.\n");
        case ExternalDuplicateGroup::LeftOut:
            return ContentMatchModel::tr("Content matched %1, which could not be added to the database.\n");
        default:
            return ContentMatchModel::tr("Content matched %1, which was added to the database.\n");
        }
    };
    return line().arg(group.keptFile.path);
}

/** Above the files of the database that an added one is like. */
QString headingOf(int count, bool areHyperlinks)
{
    if (areHyperlinks)
        return count == 1
                   ? ContentMatchModel::tr("    Content matched the following hyperlink in the database:\n")
                   : ContentMatchModel::tr("    Content matched the following hyperlinks in the database:\n");
    return count == 1 ? ContentMatchModel::tr("    Content matched the following file in the database:\n")
                      : ContentMatchModel::tr("    Content matched the following files in the database:\n");
}

QString addedFileLine(const DuplicateFileInfo &file)
{
    if (!file.isFile())
        return file.path;
    return ContentMatchModel::tr("%1  Size: %2  Last Modified: %3")
        .arg(file.path, QLocale().toString(file.size), dateText(file.lastModified));
}

QString withoutLineEnds(QString line)
{
    return line.remove(QLatin1Char('\n'));
}

} // namespace

ContentMatchModel::ContentMatchModel(const PresentableDuplicates &duplicates, const Lookup &lookup,
                                     QObject *parent)
    : QAbstractListModel(parent), m_duplicates(duplicates), m_lookup(lookup)
{
    const QVector<DuplicateMatch> &matches = m_duplicates.contentMatches;
    const QVector<ExternalDuplicateGroup> &groups = m_duplicates.externalDuplicateGroups;
    m_firstRows.reserve(matches.size() + groups.size() + 1);
    // The first row of each group, so that the line of any row is found by bisection and no text is made
    // before it is shown.
    m_firstRows.append(headingRows);
    for (const DuplicateMatch &match : matches) {
        const int added = match.addedFiles.size();
        const int known = match.databaseFiles.size();
        m_matchedCount += added;
        append(added + (added > 1 ? 1 : 0) + (known > 0 ? 1 + rowsOfDatabaseFile * known : 0));
    }
    m_leftOutCount = m_matchedCount;
    for (const ExternalDuplicateGroup &group : groups) {
        m_leftOutCount += group.ignoredFiles.size();
        append(2 * group.ignoredFiles.size() + 2);
    }
}

void ContentMatchModel::append(int lineCount)
{
    m_firstRows.append(m_firstRows.last() + lineCount + 1); // an empty line below
}

int ContentMatchModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return m_leftOutCount == 0 ? 1 : m_firstRows.last();
}

QVariant ContentMatchModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || role != Qt::DisplayRole)
        return {};
    return ShownText::cut(line(index.row()));
}

Qt::ItemFlags ContentMatchModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? QAbstractListModel::flags(index) | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

QModelIndexList ContentMatchModel::match(const QModelIndex &, int, const QVariant &, int,
                                         Qt::MatchFlags) const
{
    return {};
}

QString ContentMatchModel::line(int row) const
{
    if (m_leftOutCount == 0)
        return tr("No content duplicates.");
    if (row < headingRows)
        return row > 0
                   ? QString()
                   : tr("The following%1 files and hyperlinks will not be added to the database:", nullptr,
                        m_leftOutCount)
                         .arg(QLatin1Char(' ') + QLocale().toString(m_leftOutCount));
    const auto next = std::upper_bound(m_firstRows.cbegin(), m_firstRows.cend(), row);
    const int place = int(next - m_firstRows.cbegin()) - 1;
    const int number = row - m_firstRows.at(place);
    const int matchCount = m_duplicates.contentMatches.size();
    return withoutLineEnds(
        place < matchCount ? matchLine(m_duplicates.contentMatches.at(place), number)
                           : groupLine(m_duplicates.externalDuplicateGroups.at(place - matchCount), number));
}

QString ContentMatchModel::matchLine(const DuplicateMatch &match, int number) const
{
    const int added = match.addedFiles.size();
    if (number < added)
        return addedFileLine(match.addedFiles.at(number));
    number -= added;
    if (added > 1 && number-- == 0)
        return otherFileLine();
    if (match.databaseFiles.isEmpty())
        return {};
    if (number-- == 0)
        return databaseHeading(match);
    if (number >= rowsOfDatabaseFile * match.databaseFiles.size())
        return {};
    const DuplicateFileInfo &file = match.databaseFiles.at(number / rowsOfDatabaseFile);
    if (number % rowsOfDatabaseFile > 0)
        return tr("\n           Tags: %1").arg(m_lookup(file).tagNames);
    return tr("Database file: %1   Size: %2 Last Modified: %3")
        .arg(file.path, QLocale().toString(file.size), dateText(file.lastModified));
}

QString ContentMatchModel::databaseHeading(const DuplicateMatch &match) const
{
    if (match.fillsMissingPlace)
        return tr("    Took the place of the following missing file in the database:\n");
    const bool areHyperlinks =
        std::all_of(match.databaseFiles.cbegin(), match.databaseFiles.cend(),
                    [this](const DuplicateFileInfo &file) { return m_lookup(file).isHyperlink; });
    return headingOf(match.databaseFiles.size(), areHyperlinks);
}

QString ContentMatchModel::groupLine(const ExternalDuplicateGroup &group, int number) const
{
    if (number == 0)
        return tr("External content duplicate group.");
    --number;
    const int ignored = 2 * group.ignoredFiles.size();
    if (number < ignored)
        return number % 2 == 0 ? addedFileLine(group.ignoredFiles.at(number / 2)) : otherFileLine();
    if (number > ignored)
        return {};
    return outcomeLine(group);
}
