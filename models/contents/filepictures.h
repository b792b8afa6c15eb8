#pragma once

#include <QCache>
#include <QHash>
#include <QPixmap>

class QImage;

/**
 * Puts the pictures of files together: the one of the kind, or a thumbnail, under the overlays for missing
 * files, links and hyperlinks. What was put together is kept, so that painting a row costs a look-up. GUI
 * thread.
 */
class FilePictures
{
public:
    enum Overlay : int { MissingOverlay = 0, LinkOverlay = 1, HyperlinkOverlay = 2 };
    /** The icon kind of files that show their thumbnail. */
    static constexpr int thumbnailKind = 6;

    /** internal as in File. */
    QPixmap ofKind(int iconKind, bool isMissing, int internal);
    /** The thumbnail is borrowed and may change its contents between calls; null shows as still loading. */
    QPixmap ofThumbnail(qint64 fileId, const QImage *thumbnail, bool isMissing, int internal);

    /** Forgets the pictures of single files. */
    void clear();

private:
    struct Composed
    {
        qint64 thumbnailKey = 0;
        int overlays = 0;
        QPixmap picture;
    };

    QHash<int, QPixmap> m_byKind;
    QCache<qint64, Composed> m_byFile{400};
};
