#pragma once

#include <QString>

/**
 * Texts from databases and drops as they are shown. They may be of any length, and to break or measure a line
 * of megabytes holds up the window for seconds.
 */
namespace ShownText {
/** More signs than this tell nobody more. */
constexpr int mostSigns = 1000;

/** The text, or its beginning and its end around an ellipsis when it is longer. */
QString cut(const QString &text, int longest = mostSigns);
/** The same for a text of several lines, each cut by itself. */
QString cutLines(const QString &text, int longest = mostSigns);
/** Lets a line break inside of long words too, which would widen a window. */
QString breakable(const QString &text);
/** The number that chooses the plural of a text about so many, which may be more than an int holds. */
int forPlural(qint64 count);
/** For tool tips: cut, and never taken for markup. */
QString toolTip(const QString &text);
} // namespace ShownText
