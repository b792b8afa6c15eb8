#pragma once

#include <QCoreApplication>
#include <QStringList>

/** What an add has left out, gathered to be told once and at its end. */
struct LeftOutFiles
{
    Q_DECLARE_TR_FUNCTIONS(LeftOutFiles)

public:
    QStringList unreadable;      ///< files and folders: gone, of another kind, without rights or damaged
    QStringList unreadableNames; ///< files whose names are no text in the encoding of the system
    QStringList unreadableNamesOfFolders;
    qint64 filesOutOfReach = 0; ///< in those folders

    /** A sentence for each kind, with the first names; empty when nothing was left out. */
    QString text() const;
};
