#pragma once

#include "fileops/files/shellfile.h"

#include <QList>
#include <QWidget>

/** Lists the files of a shell that the database has no file for. A window of its own that bars nothing. */
class ShellImportNotification : public QWidget
{
    Q_OBJECT

public:
    explicit ShellImportNotification(const QList<ShellFile> &files, QWidget *parent = nullptr);
};
