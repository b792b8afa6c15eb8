#pragma once

class QAbstractItemView;
class QDrag;

/** Gives a drag of a view's selection its picture: the name of one row, and how many others come along. */
void setDragPicture(QDrag *drag, const QAbstractItemView *view);
