#include "fileops/importing/importreport.h"

#include "fileops/adding/firstnames.h"

#include <QLocale>

namespace {
constexpr int keptNames = 11; // one more than are shown, which tells that there are others

} // namespace

void ImportReport::leaveOut(const QString &why, const QString &name)
{
    LeftOut &leftOut = m_leftOut[why];
    ++leftOut.count;
    if (leftOut.names.size() < keptNames)
        leftOut.names.append(name);
}

void ImportReport::leaveOut(const QString &why, int count)
{
    if (count > 0)
        m_leftOut[why].count += count;
}

QString ImportReport::text(const QString &sourceName) const
{
    QStringList lines{tr("Imported from \"%1\":").arg(sourceName)};
    const auto line = [&](const QString &words, Kind kind) {
        lines += words.arg(QLocale().toString(counted(kind)));
    };
    line(tr("New files: %1"), Files);
    line(tr("Files that were here already: %1"), KnownFiles);
    line(tr("New tags: %1"), Tags);
    line(tr("New links between tags and files: %1"), Links);
    line(tr("New tag groups: %1"), Groups);
    line(tr("New browsing nodes: %1"), Nodes);
    line(tr("New tag relationships: %1"), Relationships);
    line(tr("Changed descriptions: %1"), Descriptions);
    if (!m_leftOut.isEmpty())
        lines += {QString(), tr("Not imported:")};
    for (auto reason = m_leftOut.cbegin(); reason != m_leftOut.cend(); ++reason) {
        lines += reason.key().arg(QLocale().toString(reason->count));
        if (!reason->names.isEmpty())
            lines += firstNames(reason->names);
    }
    if (!m_note.isEmpty())
        lines += {QString(), m_note};
    return lines.join(QLatin1Char('\n'));
}
