#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

/**
 * Gives each control of a dialog that is about to be shown a letter that reaches it with Alt, whatever the
 * language: letters that the texts name themselves stay as long as no two are the same. Labels reach the
 * field beside them. Controls on different pages may share letters, as only one page is shown. Watches the
 * application. GUI thread.
 */
class Mnemonics : public QObject
{
    Q_OBJECT

public:
    explicit Mnemonics(QObject *application);

    static void give(QWidget *dialog);
    /** The texts with a letter each, as far as there are any, none of them among those that are taken. */
    static QStringList distribute(const QStringList &texts, QSet<QChar> &taken);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
