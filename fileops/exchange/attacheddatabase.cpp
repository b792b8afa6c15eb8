#include "fileops/exchange/attacheddatabase.h"

#include "fileops/worker/fileoperationworker.h"

#include <QFileInfo>
#include <QUrl>

namespace {
QString readOnlyAddress(const QString &path)
{
    // Else a question mark or a number sign in the name would end it.
    const QByteArray name = QUrl::toPercentEncoding(path, QByteArrayLiteral("/"));
    return QLatin1String("file://") + QString::fromLatin1(name) + QLatin1String("?mode=ro");
}
} // namespace

AttachedDatabase::AttachedDatabase(FileOperationWorker &worker, const QString &schema)
    : m_worker(worker), m_statements(worker), m_schema(schema)
{
}

AttachedDatabase::~AttachedDatabase()
{
    if (m_isAttached)
        detach();
}

bool AttachedDatabase::attach(const QString &path, Access access)
{
    detach();
    const QString place = QFileInfo(path).absoluteFilePath();
    m_isAttached = m_statements.run(QStringLiteral("ATTACH ? AS %1;").arg(m_schema),
                                    {access == ReadOnly ? readOnlyAddress(place) : place});
    return m_isAttached;
}

bool AttachedDatabase::detach()
{
    // Statements that still hold their place in its tables would keep it.
    m_worker.clearPrepared();
    const bool isDone = m_statements.run(QStringLiteral("DETACH %1;").arg(m_schema));
    m_isAttached = m_isAttached && !isDone;
    return isDone;
}
