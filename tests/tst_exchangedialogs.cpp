#include "tests/support/settingssandbox.h"
#include "tests/support/text.h"
#include "ui/dialogs/databasecontentsselector.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QtTest>

namespace {

const QStringList importButtons{"filesBox"_s,         "descriptionsBox"_s, "appendButton"_s,
                                "replaceButton"_s,    "tagsBox"_s,         "nodesBox"_s,
                                "relationshipsBox"_s, "fileTagsBox"_s,     "groupsBox"_s};

QAbstractButton *button(const QDialog &dialog, const QString &name)
{
    return dialog.findChild<QAbstractButton *>(name);
}

/** The buttons that are ticked and can be clicked, or all that are ticked. */
QStringList ticked(const QDialog &dialog, bool onlyEnabled)
{
    QStringList names;
    for (const QString &name : importButtons) {
        const QAbstractButton *shown = button(dialog, name);
        if (shown->isChecked() && (shown->isEnabled() || !onlyEnabled))
            names.append(name);
    }
    return names;
}

QString told(const ImportOptions &options)
{
    QString text;
    const auto add = [&text](bool isOn, char letter) {
        text += isOn ? QLatin1Char(letter) : QLatin1Char('-');
    };
    add(options.files, 'f');
    add(options.tags, 't');
    add(options.browsingNodes, 'n');
    add(options.tagRelationships, 'r');
    add(options.fileTags, 'l');
    add(options.tagGroups, 'g');
    return text + QString::number(options.descriptions);
}

} // namespace

/** The dialogs that ask what goes out of a database and what comes into it. */
class TestExchangeDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { SettingsSandbox::clear(); }

    void selectorTellsAndKeepsTheChoice_data()
    {
        addColumns<bool, QStringList, QString, QString>("isShell", "clicked", "told", "toldNextTime");
        addRow("all at first", false, QStringList(), "ftnrlg1"_s, "ftnrlg1"_s);
        addRow("a shell has no files and forgets none", true, QStringList(), "-tnrlg1"_s, "ftnrlg1"_s);
        addRow("replaced descriptions", false, QStringList{"replaceButton"_s}, "ftnrlg2"_s, "ftnrlg2"_s);
        addRow("no descriptions", false, QStringList{"replaceButton"_s, "descriptionsBox"_s}, "ftnrlg0"_s,
               "ftnrlg0"_s);
        addRow("nothing hangs on tags that stay", false, QStringList{"tagsBox"_s}, "f-----1"_s, "f-----1"_s);
        addRow("each box", false,
               QStringList{"filesBox"_s, "nodesBox"_s, "relationshipsBox"_s, "fileTagsBox"_s}, "-t---g1"_s,
               "-t---g1"_s);
        addRow("groups", false, QStringList{"groupsBox"_s}, "ftnrl-1"_s, "ftnrl-1"_s);
    }

    void selectorTellsAndKeepsTheChoice()
    {
        QFETCH(bool, isShell);
        QFETCH(QStringList, clicked);
        QFETCH(QString, told);
        QFETCH(QString, toldNextTime);
        DatabaseContentsSelector dialog("/a/b.vrn"_s, isShell);
        for (const QString &name : clicked)
            button(dialog, name)->click();
        QCOMPARE(::told(dialog.options()), told);
        dialog.accept();
        DatabaseContentsSelector next("/a/b.vrn"_s, false);
        QCOMPARE(::told(next.options()), toldNextTime);
    }

    void selectorForgetsWhatWasRejected()
    {
        DatabaseContentsSelector dialog("/a/b.vrn"_s, false);
        button(dialog, "filesBox"_s)->click();
        dialog.reject();
        QCOMPARE(told(DatabaseContentsSelector("/a/b.vrn"_s, false).options()), "ftnrlg1"_s);
    }

    void selectorBringsBackTheBoxesOfTags()
    {
        DatabaseContentsSelector dialog("/a/b.vrn"_s, false);
        button(dialog, "tagsBox"_s)->click();
        QCOMPARE(ticked(dialog, true), (QStringList{"filesBox"_s, "descriptionsBox"_s, "appendButton"_s}));
        QVERIFY(ticked(dialog, false).contains("groupsBox"_s));
        button(dialog, "filesBox"_s)->click();
        button(dialog, "descriptionsBox"_s)->click();
        QVERIFY(!dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled());
    }
};

QTEST_MAIN(TestExchangeDialogs)
#include "tst_exchangedialogs.moc"
