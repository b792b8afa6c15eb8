#pragma once

class QAbstractItemView;
class QString;

/** Paints a quiet text in the middle of a view that has no rows; call it at the end of its paintEvent. */
void paintEmptyHint(QAbstractItemView *view, const QString &text);
