#include "fileops/adding/foldertags.h"

#include "fileops/adding/folderexpansion.h"

#include <algorithm>

FolderTags::FolderTags(const QVector<ExpandedFolder> &folders, bool isLimited, int limit)
{
    for (const ExpandedFolder &folder : folders) {
        QStringList parts = folder.relativePath.split(QLatin1Char('/'), Qt::SkipEmptyParts);
        if (isLimited && parts.size() > limit)
            continue;
        // A folder may be called by a blank, a tag may not.
        const auto isBlank = [](const QString &name) { return name.trimmed().isEmpty(); };
        parts.erase(std::remove_if(parts.begin(), parts.end(), isBlank), parts.end());
        add(folder.path, parts);
    }
}

void FolderTags::add(const QString &folderPath, const QStringList &names)
{
    m_names.insert(folderPath, names);
    for (const QString &name : names) {
        if (!m_seen.contains(name)) {
            m_seen.insert(name);
            m_allNames.append(name);
        }
    }
    m_lastFolder.clear();
}

QStringList FolderTags::namesFor(const QString &filePath) const
{
    if (m_names.isEmpty())
        return {};
    const int slash = filePath.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return {};
    const QStringRef folder = filePath.leftRef(slash);
    // Files come folder by folder, so the last answer is nearly always the next one too.
    if (m_lastFolder.isEmpty() || folder != m_lastFolder) {
        m_lastFolder = folder.toString();
        m_lastNames = lookUp(m_lastFolder);
    }
    return m_lastNames;
}

QStringList FolderTags::lookUp(QString folder) const
{
    while (!folder.isEmpty()) {
        const auto found = m_names.constFind(folder);
        if (found != m_names.constEnd())
            return *found;
        folder.truncate(qMax(0, folder.lastIndexOf(QLatin1Char('/'))));
    }
    return m_names.value(QStringLiteral("/"));
}
