#pragma once

class QWidget;

/** Puts an open window in front of the others, as far as the desktop lets a program do that. GUI thread. */
void bringToFront(QWidget *window);
