#pragma once

class QString;
class QStringList;

/** The names a line each, as many as a box has room for. */
QString firstNames(const QStringList &names);
