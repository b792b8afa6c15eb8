#pragma once

#include <QRect>

class FileCount;
class QPainter;
class QStyleOptionViewItem;

/**
 * A number of files in grey at the end of an item's row, right of its text, or left where texts run from the
 * right. The row is where it may stand, which need not be the item's own rectangle. GUI thread.
 */
namespace RowCount {
/** What it takes of the row, with the room that keeps it off the text. */
int width(const QStyleOptionViewItem &option, const FileCount &count);
/** What the text of the item has of the row beside it, in pixels; below 0 where there is no room for both. */
int textWidth(const QStyleOptionViewItem &option, const QRect &row, const FileCount &count);
/** Over an item that the style has painted, whose text ends before it. */
void paint(QPainter *painter, const QStyleOptionViewItem &option, const QRect &row, const FileCount &count);
} // namespace RowCount
