#include "fileops/exporting/exportsummary.h"

#include "fileops/adding/firstnames.h"
#include "fileops/worker/exportrequest.h"

#include <QLocale>

QString ExportSummary::text(const QString &path, int form) const
{
    const QString target = firstNames({path});
    QStringList parts;
    parts += form == ExportRequest::Csv
                 ? tr("Exported to \"%1\".\nFiles: %2").arg(target, QLocale().toString(files))
                 : tr("Exported to \"%1\".\nFiles: %2, tags: %3, browsing nodes: %4")
                       .arg(target, QLocale().toString(files), QLocale().toString(tags),
                            QLocale().toString(nodes));
    for (auto reason = skipped.cbegin(); reason != skipped.cend(); ++reason)
        parts += tr("Not exported: %1. %2\n%3")
                     .arg(QLocale().toString(reason->size()), reason.key(), firstNames(*reason));
    if (filesGone > 0)
        parts +=
            tr("Not exported, as they are no longer in the database: %1.").arg(QLocale().toString(filesGone));
    if (pathsLeftOut > 0)
        parts += tr("Tag relationships not exported, as they are too deep: %1.")
                     .arg(QLocale().toString(pathsLeftOut));
    if (fieldsWithQuotes > 0)
        parts += tr("Fields that hold a double quote: %1. It stands in the file as it is, and other programs "
                    "may take it for the end of the field.")
                     .arg(QLocale().toString(fieldsWithQuotes));
    return parts.join(QLatin1String("\n\n"));
}
