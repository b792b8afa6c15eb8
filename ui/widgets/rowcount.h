#pragma once

#include <QRect>

class QPainter;
class QString;
class QStyleOptionViewItem;

/** A number in grey at the end of an item's row, right of its text, or left where texts run from the right.
 */
namespace RowCount {
/** What it takes of the row, with the room that keeps it off the text. */
int width(const QStyleOptionViewItem &option, const QString &count);
/** What is left of the text's room beside it, in pixels; -1 where the text could not be told any more. */
int textWidth(const QStyleOptionViewItem &option, const QString &count);
/** Over an item that the style has painted, whose text ends before it; the row is where the number may stand.
 */
void paint(QPainter *painter, const QStyleOptionViewItem &option, const QRect &row, const QString &count);
} // namespace RowCount
