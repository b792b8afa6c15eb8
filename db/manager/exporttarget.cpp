#include "db/manager/exporttarget.h"

#include "app/settings/constants.h"
#include "db/manager/sqlitedbmanager.h"
#include "fileops/files/partfile.h"
#include "fileops/worker/exportrequest.h"

#include <QFileInfo>

#include <cerrno>

namespace {
bool makeDatabase(const QString &path)
{
    SQLiteDBManager manager(Constants::sqliteDriver, path, QString(), QString(), QString(), 0);
    return manager.createDatabase();
}
} // namespace

std::shared_ptr<PartFile> ExportTarget::make(const ExportRequest &request)
{
    if (!mayStandAt(request.path, request.form))
        return nullptr;
    auto target = std::make_shared<PartFile>(request.path);
    errno = 0;
    if (!target->open(QFileInfo::exists(request.path)))
        refuse(qt_error_string(errno));
    else if (request.form != ExportRequest::Csv && !makeDatabase(target->path()))
        refuse(tr("No database can be made there. The disk may be full, or take no locks."));
    return m_refusal.isEmpty() ? target : nullptr;
}

bool ExportTarget::mayStandAt(const QString &path, int form)
{
    const QFileInfo there(path);
    if (there.isDir())
        return refuse(tr("A folder has this name."));
    if (there.isSymLink() && !there.exists())
        return refuse(tr("A link has this name, and what it leads to is gone."));
    // To take its place would need the rights on the folder alone.
    if (there.exists() && !there.isWritable())
        return refuse(tr("The file there is write-protected."));
    if (form == ExportRequest::Csv)
        return true;
    // SQLite would take the changes in it for those of the new database.
    for (const char *ending : {"-journal", "-wal"}) {
        const QString leftover = path + QLatin1String(ending);
        if (QFileInfo::exists(leftover))
            return refuse(
                tr("The database there is in use, or a change of it was broken off: there is a file "
                   "\"%1\".")
                    .arg(QFileInfo(leftover).fileName()));
    }
    return true;
}

bool ExportTarget::refuse(const QString &reason)
{
    m_refusal = reason;
    return false;
}
