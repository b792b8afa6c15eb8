#pragma once

#include "fileops/pictures/picturerequest.h"

/**
 * What goes between the program and the processes that read its pictures: both ends are the same binary on
 * one computer. A request takes the descriptor of the picture along. Its answer is one byte when it has come,
 * and later the head, the colours of the palette, the notes and the pixels line by line.
 */
namespace PictureMessage {
constexpr char received = 'R';

struct Request
{
    qint64 bytes;
    qint32 seconds;
    qint32 use;
};

struct Answer
{
    qint64 pixelBytes;
    qint32 isRead;
    qint32 width;
    qint32 height;
    qint32 format;
    qint32 dotsPerMeterX;
    qint32 dotsPerMeterY;
    qint32 transformation;
    qint32 pictureCount;
    qint32 colourCount;
    qint32 notesLength;
};

/** Whether a reader that nobody has taken over can have answered so. */
bool isPlausible(const Answer &head, PictureUse use);
} // namespace PictureMessage
