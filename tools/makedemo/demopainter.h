#pragma once

#include "tools/makedemo/democontents.h"

#include <QImage>

/** Draws the picture of a motif; the name decides colours and shapes, so that a name gives one picture. */
QImage paintDemoPicture(const DemoContents::Picture &picture);
