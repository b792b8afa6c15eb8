#include "app/settings/specialnodes.h"

namespace SpecialNodes {

const QMap<int, QString> &longTexts()
{
    static const QMap<int, QString> texts{
        {2, QStringLiteral("All files with tags")},
        {3, QStringLiteral("All files without tags")},
        {4, QStringLiteral("All files with their contents in the database.")},
        {5, QStringLiteral("All files residing in paths external to the database.")},
        {6, QStringLiteral("All Hyperlinks")},
        {7, QStringLiteral("Recently added files")},
    };
    return texts;
}

const QMap<int, QString> &shortTexts()
{
    static const QMap<int, QString> texts{
        {2, QStringLiteral("All files with tags")}, {3, QStringLiteral("All files without tags")},
        {4, QStringLiteral("All Internal Files")},  {5, QStringLiteral("All External Files")},
        {6, QStringLiteral("All Hyperlinks")},      {7, QStringLiteral("Recently added files")},
    };
    return texts;
}

} // namespace SpecialNodes
