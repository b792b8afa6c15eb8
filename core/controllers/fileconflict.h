#pragma once

#include <QPair>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

/** A file of the database that is to be extracted where a different file has its name already. */
struct FileConflict
{
    qint64 fileId = 0;
    QString name;
    QString newName; ///< free in the folder, and given to no other file of the same extraction
};

/** Pairs of file id and MiscOperationThread::NameChoice. A file without a pair is left out. */
using FileConflictChoices = QVector<QPair<qint64, int>>;

/**
 * Asks what becomes of several conflicts in a folder, whose path ends in "/"; nothing when the user
 * would rather not extract at all. Called on the GUI thread; the loop of a dialog may run meanwhile.
 */
using FileConflictAsker = std::function<std::optional<FileConflictChoices>(
    const QString &folder, const QVector<FileConflict> &conflicts)>;
