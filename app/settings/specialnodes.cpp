#include "app/settings/specialnodes.h"

#include <QCoreApplication>

namespace {
/** Where the texts of this file are looked up. */
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(SpecialNodes)
};
} // namespace

namespace SpecialNodes {

QString allFiles()
{
    return Texts::tr("All files");
}

const QMap<int, QString> &longTexts()
{
    // Filled on first use, when the translators are installed; a global one would be too early.
    static const QMap<int, QString> texts{
        {2, Texts::tr("All files with tags")},
        {3, Texts::tr("All files without tags")},
        {4, Texts::tr("All files with their contents in the database.")},
        {5, Texts::tr("All files residing in paths external to the database.")},
        {6, Texts::tr("All Hyperlinks")},
        {7, Texts::tr("Recently added files")},
    };
    return texts;
}

const QMap<int, QString> &shortTexts()
{
    static const QMap<int, QString> texts{
        {2, Texts::tr("All files with tags")}, {3, Texts::tr("All files without tags")},
        {4, Texts::tr("All Internal Files")},  {5, Texts::tr("All External Files")},
        {6, Texts::tr("All Hyperlinks")},      {7, Texts::tr("Recently added files")},
    };
    return texts;
}

} // namespace SpecialNodes
