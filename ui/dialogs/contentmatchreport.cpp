#include "ui/dialogs/contentmatchreport.h"

#include <QLocale>

namespace {

QString dateText(const QDateTime &date)
{
    return QLocale().toString(date, QLocale::ShortFormat);
}

} // namespace

QString ContentMatchReport::text(const PresentableDuplicates &duplicates) const
{
    int count = 0;
    QString matches;
    for (const DuplicateMatch &match : duplicates.contentMatches) {
        matches += matchText(match) + QLatin1Char('\n');
        count += match.addedFiles.size();
    }
    for (const ExternalDuplicateGroup &group : duplicates.externalDuplicateGroups) {
        matches += groupText(group) + QLatin1Char('\n');
        count += group.ignoredFiles.size();
    }
    if (count == 0)
        return {};
    const QString heading = tr("The following%1 files and hyperlinks will not be added to the database:")
                                .arg(QLatin1Char(' ') + QString::number(count));
    return heading + QStringLiteral("\n\n") + matches;
}

QString ContentMatchReport::matchText(const DuplicateMatch &match) const
{
    QString text;
    for (const DuplicateFileInfo &file : match.addedFiles)
        text += addedFileText(file);
    if (match.addedFiles.size() > 1)
        text += tr("    Content matched other external file\n");
    if (match.databaseFiles.isEmpty())
        return text;

    QString databaseFiles;
    bool areHyperlinks = true;
    for (const DuplicateFileInfo &file : match.databaseFiles) {
        const KnownFile known = m_lookup(file);
        areHyperlinks = areHyperlinks && known.isHyperlink;
        databaseFiles += databaseFileText(file, known);
    }
    QString noun = areHyperlinks ? tr("hyperlink") : tr("file");
    if (match.databaseFiles.size() > 1)
        noun += QLatin1Char('s');
    return text + tr("    Content matched the following ") + noun + tr(" in the database:\n") + databaseFiles;
}

QString ContentMatchReport::groupText(const ExternalDuplicateGroup &group) const
{
    QString text = tr("External content duplicate group.") + QLatin1Char('\n');
    for (const DuplicateFileInfo &file : group.ignoredFiles)
        text += addedFileText(file) + tr("    Content matched other external file\n");
    return text + tr("Content matched ") + group.keptFile.path + tr(", which was added to the database.\n");
}

QString ContentMatchReport::addedFileText(const DuplicateFileInfo &file)
{
    QString text = file.path;
    // A hyperlink has neither size nor date.
    if (file.lastModified.isValid()) {
        text += tr("  Size: ") + QString::number(file.size) + tr("  Last Modified: ") +
                dateText(file.lastModified);
    }
    return text + QLatin1Char('\n');
}

QString ContentMatchReport::databaseFileText(const DuplicateFileInfo &file, const KnownFile &known) const
{
    return tr("Database file: ") + file.path + tr("   Size: ") + QString::number(file.size) +
           tr(" Last Modified: ") + dateText(file.lastModified) + tr("\n           Tags: ") + known.tagNames +
           QLatin1Char('\n');
}
