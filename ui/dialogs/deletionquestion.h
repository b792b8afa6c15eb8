#pragma once

class QString;
class QWidget;

/** Asks whether the selected ones, "links" or whatever they are, are really to be deleted. */
bool confirmDeletion(QWidget *parent, const QString &noun);
