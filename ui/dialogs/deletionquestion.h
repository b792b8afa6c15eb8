#pragma once

class QString;
class QWidget;

/** Asks, with a warning, whether something is really to be deleted. */
bool confirmDeletion(QWidget *parent, const QString &question);
