#pragma once

#include "fileops/files/regularfile.h"

#include <QByteArray>
#include <QString>

/**
 * The bytes of a file on the disk, read whole and replaced in one step: at no time there is half a file. Its
 * permissions stay, and so does a link, behind which the file itself is replaced. Any thread.
 */
class ExternalContents
{
public:
    /** The file as it was when it had this stamp. */
    ExternalContents(const QString &path, const FileStamp &stamp) : m_path(path), m_stamp(stamp) {}

    /** False for what is no regular file, is larger, or changes meanwhile. */
    static bool read(const QString &path, qint64 mostBytes, QByteArray &bytes, FileStamp &stamp);

    /** False, with the file as it is, when it has another stamp by now or its folder takes no file. */
    bool replace(const QByteArray &bytes);
    /** Takes a replacement back, to the old time too. */
    bool restore(const QByteArray &oldBytes);

private:
    QString m_path;
    FileStamp m_stamp;
};
