#include "fileops/files/externalcontents.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>
#include <QSaveFile>

bool ExternalContents::read(const QString &path, qint64 mostBytes, QByteArray &bytes, FileStamp &stamp)
{
    RegularFile source;
    if (!source.open(path) || source.size() > mostBytes)
        return false;
    stamp = source.stamp();
    bytes.resize(int(source.size()));
    return source.read(bytes.data(), bytes.size()) == bytes.size() && source.isAsOpened();
}

bool ExternalContents::replace(const QByteArray &bytes)
{
    QSaveFile target(QFileInfo(m_path).canonicalFilePath());
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.flush())
        return false;
    return RegularFile::stampOf(m_path) == m_stamp && target.commit();
}

bool ExternalContents::restore(const QByteArray &oldBytes)
{
    constexpr qint64 nanosecondsPerMillisecond = 1000000;
    const QDateTime oldTime = QDateTime::fromMSecsSinceEpoch(m_stamp.modified / nanosecondsPerMillisecond);
    m_stamp = RegularFile::stampOf(m_path);
    QFile file(m_path);
    const bool isBack = replace(oldBytes) && file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) &&
                        file.setFileTime(oldTime, QFileDevice::FileModificationTime);
    if (!isBack)
        qDebug() << "ExternalContents: could not put back the contents of" << m_path;
    return isBack;
}
