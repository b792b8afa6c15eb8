#pragma once

#include "fileops/files/filelook.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

#include <functional>

/** What a look at one of many files told. */
struct AnsweredLook
{
    bool isAnswered = false; ///< false: its disk does not answer, or nobody wanted to wait any more
    FileLook look;

    /** False as well where nothing is known. */
    bool isAbsent() const { return isAnswered && !look.isThere && !look.isHidden; }
};

/**
 * Looks at many files for somebody who must not be held by a disk that does not answer: such a one is waited
 * for once, for some seconds, and its files are passed over from then on, until it answers. Any thread.
 */
namespace FileLooks {
/** One for each path, as the system has it; `isUnwanted` is asked every few milliseconds. */
QVector<AnsweredLook> at(const QVector<QByteArray> &paths, const std::function<bool()> &isUnwanted);
QVector<AnsweredLook> at(const QStringList &paths, const std::function<bool()> &isUnwanted);
AnsweredLook at(const QString &path, const std::function<bool()> &isUnwanted);
} // namespace FileLooks
