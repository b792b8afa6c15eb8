#pragma once

#include <QString>

class QPainter;
class QStyleOptionViewItem;

/** Shows in the painted text of an item where a search has found something. GUI thread. */
namespace HitMark {
/**
 * Over an item that the style has painted without wrapping lines: marks the first place of the hit, whatever
 * its case, or the dots of the elision that it is behind. Nothing else is painted.
 */
void paint(QPainter *painter, const QStyleOptionViewItem &option, const QString &hit);
} // namespace HitMark
