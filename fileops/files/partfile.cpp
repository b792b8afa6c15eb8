#include "fileops/files/partfile.h"

#include "fileops/files/filemoves.h"

#include <QFileInfo>

#include <cerrno>
#include <unistd.h>

namespace {
const QString ending = QStringLiteral(".part");

bool isAboutName(int reason)
{
    return reason == EEXIST || reason == EISDIR || reason == ENOTEMPTY || reason == EINVAL ||
           reason == ENAMETOOLONG || reason == EILSEQ;
}
} // namespace

PartFile::~PartFile()
{
    discard();
}

void PartFile::discard()
{
    if (m_isPending)
        m_file.remove();
    m_isPending = false;
}

bool PartFile::open(bool isReplacing)
{
    const QFileInfo old(m_target);
    m_isReplacing = isReplacing;
    m_isPending = m_file.open(QFileInfo(m_target).path(), ending,
                              isReplacing ? LockedFile::ForOwner : LockedFile::AsUsual);
    // A link may lead to a folder or device, whose permissions would make a program of the file.
    if (m_isPending && isReplacing && old.isFile())
        device().setPermissions(old.permissions());
    return m_isPending;
}

PartFile::Outcome PartFile::giveName()
{
    // Also as a part of what it was to be: whoever wrote it knows that.
    device().flush();
    return finish(FileMoves::moveUnlessTaken(m_file.path(), m_target));
}

PartFile::Outcome PartFile::replace()
{
    errno = 0;
    // On the disk before the old file is gone from there.
    return finish(device().flush() && ::fsync(device().handle()) == 0 &&
                  FileMoves::moveOver(m_file.path(), m_target));
}

PartFile::Outcome PartFile::finish(bool isNamed)
{
    const int reason = errno;
    m_isPending = !isNamed;
    // Closed last: until then it is locked, and nobody takes it for a leftover.
    if (isNamed)
        device().close();
    return isNamed ? Named : isAboutName(reason) ? Refused : Failed;
}

void PartFile::removeLeftovers(const QString &folder)
{
    LockedFile::removeLeftovers(folder, ending);
}
