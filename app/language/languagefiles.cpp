#include "app/language/languagefiles.h"

#include <QCoreApplication>
#include <QLibraryInfo>

LanguageFiles::LanguageFiles(QStringList folders) : m_folders(std::move(folders)) {}

bool LanguageFiles::load(const QLocale &locale)
{
    for (const QString &folder : m_folders) {
        if (!m_own.load(locale, QStringLiteral("vorna"), QStringLiteral("_"), folder))
            continue;
        // Of the same language, also where the user prefers one that only the toolkit knows: no half of each.
        if (m_toolkit.load(QLocale(m_own.language()), QStringLiteral("qtbase"), QStringLiteral("_"),
                           QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&m_toolkit);
        QCoreApplication::installTranslator(&m_own);
        return true;
    }
    return false;
}

QStringList LanguageFiles::ownFolders()
{
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    return {program + QStringLiteral("../translations"),
            program + QStringLiteral(VORNA_INSTALLED_TRANSLATIONS)};
}
