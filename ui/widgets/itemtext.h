#pragma once

class QStyleOptionViewItem;

/** How the styles of the toolkit lay out the text of an item, for what is painted beside them. GUI thread. */
namespace ItemText {
/** Where they keep texts off the left and the right edge of their room. */
int margin(const QStyleOptionViewItem &option);
} // namespace ItemText
