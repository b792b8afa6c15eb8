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
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
