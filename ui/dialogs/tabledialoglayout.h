#pragma once

class QDialog;
class QLayout;
class QString;
class QWidget;

/** Fills a dialog from above: a hint, the table, the table's buttons, and one that closes the dialog. */
void layOutTableDialog(QDialog *dialog, const QString &hint, QWidget *table, QLayout *buttons);
