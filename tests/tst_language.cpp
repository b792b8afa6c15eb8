#include "app/language/languagefiles.h"
#include "tests/support/text.h"

/** The program speaks its user's language, and its boxes the same one. */
class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    void speaksOneLanguage_data()
    {
        addColumns<QString, QString, QString>("locale", "own", "toolkit");
        addRow("German", "de_DE"_s, "Schreibgeschützte Datenbank"_s, "&Ja"_s);
        addRow("of another country", "de_AT"_s, "Schreibgeschützte Datenbank"_s, "&Ja"_s);
        addRow("French", "fr_CA"_s, "Base de données en lecture seule"_s, "&Oui"_s);
        addRow("English", "en_GB"_s, "Read-only Database"_s, "&Yes"_s);
        addRow("one that the toolkit alone knows", "es_ES"_s, "Read-only Database"_s, "&Yes"_s);
    }
    void speaksOneLanguage()
    {
        QFETCH(QString, locale);
        LanguageFiles language({VORNA_TRANSLATIONS ""_s});
        QCOMPARE(language.load(QLocale(locale)), locale != "es_ES"_s);
        QTEST(QCoreApplication::translate("AbstractController", "Read-only Database"), "own");
        QTEST(QCoreApplication::translate("QPlatformTheme", "&Yes"), "toolkit");
    }

    void countsByTheRulesOfTheLanguage_data()
    {
        addColumns<QString, int, QString>("locale", "count", "text");
        addRow("English, none", "en_US"_s, 0, "0 files"_s);
        addRow("English, one", "en_US"_s, 1, "1 file"_s);
        addRow("English, many", "en_US"_s, 1234, "1,234 files"_s);
        addRow("German, none", "de_DE"_s, 0, "0 Dateien"_s);
        addRow("German, one", "de_DE"_s, 1, "1 Datei"_s);
        addRow("German, many", "de_DE"_s, 1234, "1.234 Dateien"_s);
        addRow("French, none", "fr_FR"_s, 0, "0 fichier"_s);
        addRow("French, two", "fr_FR"_s, 2, "2 fichiers"_s);
        addRow("French, many", "fr_FR"_s, 1234, "1\u202f234 fichiers"_s);
    }
    void countsByTheRulesOfTheLanguage()
    {
        QFETCH(QString, locale);
        QFETCH(int, count);
        QLocale::setDefault(QLocale(locale));
        LanguageFiles language({VORNA_TRANSLATIONS ""_s});
        QVERIFY(language.load());
        QTEST(QCoreApplication::translate("MainFilesView", "%Ln files", nullptr, count), "text");
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
