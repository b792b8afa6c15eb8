#include "fileops/pictures/jpegdevice.h"

JpegDevice::JpegDevice(QIODevice &file) : m_file(file)
{
    // A buffer of its own would read on ahead of the decoder.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool JpegDevice::seek(qint64 position)
{
    return QIODevice::seek(position) && m_file.seek(position);
}

qint64 JpegDevice::readData(char *data, qint64 maxSize)
{
    const qint64 length = m_file.read(data, maxSize);
    m_isCut = m_isCut || (length <= 0 && maxSize > 0);
    return length;
}
