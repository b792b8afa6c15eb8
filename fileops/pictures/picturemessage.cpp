#include "fileops/pictures/picturemessage.h"

#include "fileops/pictures/picturelimits.h"
#include "fileops/pictures/thumbnailcanvas.h"

bool PictureMessage::isPlausible(const Answer &head, PictureUse use)
{
    const bool isCanvas = head.width == ThumbnailCanvas::edge && head.height == ThumbnailCanvas::edge &&
                          head.format == QImage::Format_ARGB32;
    return (use != PictureUse::Thumbnail || isCanvas) && head.width > 0 && head.height > 0 &&
           qint64(head.width) * head.height <= PictureLimit::wholePixels && head.pixelBytes > 0 &&
           head.pixelBytes <= PictureLimit::wholeBytes && head.format > QImage::Format_Invalid &&
           head.format < QImage::NImageFormats && head.colourCount >= 0 &&
           head.colourCount <= PictureLimit::colours && head.notesLength >= 0 &&
           head.notesLength <= PictureLimit::notesBytes;
}
