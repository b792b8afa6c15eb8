#pragma once

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>

/** A file of a shell database whose contents were found nowhere, so that it could not be imported. */
struct ShellFile
{
    QString fileName;
    qint64 fileSize = 0;
    QDateTime lastModified;
    QString idCode;
};
Q_DECLARE_METATYPE(ShellFile)
Q_DECLARE_METATYPE(QList<ShellFile>)
