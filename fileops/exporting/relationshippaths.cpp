#include "fileops/exporting/relationshippaths.h"

namespace {
constexpr int deepest = 1000;
constexpr int longest = 20 * deepest; // signs
} // namespace

void RelationshipPaths::add(const QString &path)
{
    if (path.size() > longest) {
        ++m_leftOut;
        return;
    }
    const QVector<QStringRef> parts = path.splitRef(QLatin1Char('.'));
    if (!m_tagIds.contains(parts.last().toLongLong()))
        return;
    if (parts.size() > deepest) {
        ++m_leftOut;
        return;
    }
    QString kept;
    for (const QStringRef &part : parts) {
        const qint64 tagId = part.toLongLong();
        if (!m_tagIds.contains(tagId))
            continue;
        if (!kept.isEmpty())
            kept += QLatin1Char('.');
        kept += QString::number(tagId);
    }
    // Of a path that is known all beginnings are.
    for (; !kept.isEmpty() && !m_paths.contains(kept);
         kept.truncate(qMax(0, kept.lastIndexOf(QLatin1Char('.')))))
        m_paths.insert(kept);
}
