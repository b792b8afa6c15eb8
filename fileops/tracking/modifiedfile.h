#pragma once

#include <QString>
#include <QVector>

/** An external file that has changed since the database learned of it, as it was read now. */
struct ModifiedFile
{
    qint64 fileId = 0;
    QString idCode;
    QString path;
    qint64 thumbnailId = 0;
    qint64 storedChecksum = 0;
    qint64 checksum = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< seconds since 1970

    bool hasOtherContents() const { return checksum != storedChecksum; }
};
using ModifiedFileList = QVector<ModifiedFile>;
