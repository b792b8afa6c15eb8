#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

/**
 * The program's texts in the language of who uses it, with those of the toolkit's own boxes in the same one.
 * Lives as long as the application object, and is loaded before the first text is asked for. GUI thread.
 */
class LanguageFiles
{
public:
    /** By default the folders beside the program: of the build, or where it was installed. */
    explicit LanguageFiles(QStringList folders = ownFolders());

    /** Takes the first of the locale's languages that there is; false when there is none, and all stays
     * English. */
    bool load(const QLocale &locale = QLocale());

private:
    static QStringList ownFolders();

    QStringList m_folders;
    QTranslator m_toolkit;
    QTranslator m_own;
};
