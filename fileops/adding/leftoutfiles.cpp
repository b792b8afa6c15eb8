#include "fileops/adding/leftoutfiles.h"

#include "fileops/adding/firstnames.h"

QString LeftOutFiles::text() const
{
    QStringList parts;
    const int names = unreadableNames.size();
    if (names > 0)
        parts += {names == 1 ? tr("1 file has a name that cannot be read:")
                             : tr("%Ln files have names that cannot be read:", nullptr, names),
                  firstNames(unreadableNames)};
    if (!unreadableNamesOfFolders.isEmpty())
        parts +=
            {tr("Files left out because the names of their folders cannot be read: %1").arg(filesOutOfReach),
             firstNames(unreadableNamesOfFolders)};
    const int others = unreadable.size();
    if (others > 0)
        parts += {others == 1 ? tr("1 file or folder could not be read:")
                              : tr("%Ln files or folders could not be read:", nullptr, others),
                  firstNames(unreadable)};
    return parts.join(QLatin1String("\n\n"));
}
