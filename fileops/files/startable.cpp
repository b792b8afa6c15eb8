#include "fileops/files/startable.h"

#include "fileops/files/regularfile.h"

#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>

namespace {
/** Of a file, if it can be read: enough for its type. */
bool readHead(const QString &path, QByteArray &head)
{
    constexpr int headSize = 4096;
    RegularFile file;
    if (!file.open(path))
        return false;
    head.resize(headSize);
    head.resize(int(qMax(qint64(0), file.read(head.data(), head.size()))));
    return true;
}

/** The disks of other systems call every file executable, so what it holds is asked, too. */
bool runs(const QString &name, const QByteArray &head)
{
    if (head.startsWith("#!") || head.startsWith("\177ELF") || head.startsWith("MZ"))
        return true;
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(name, head);
    return type.isDefault() || type.inherits(QStringLiteral("application/x-executable"));
}

/**
 * Where a name tells no type, desktops go by what the file holds, and some start it with nobody's permission:
 * by itself, or by a program that is there to start such files.
 */
bool isStartedByType(const QString &name, const QByteArray &head)
{
    static const QStringList types = {QStringLiteral("application/vnd.appimage"),
                                      QStringLiteral("application/x-desktop"),
                                      QStringLiteral("application/x-iso9660-appimage"),
                                      QStringLiteral("application/x-java-archive"),
                                      QStringLiteral("application/x-java-jnlp-file"),
                                      QStringLiteral("application/x-ms-dos-executable"),
                                      QStringLiteral("application/x-ms-shortcut"),
                                      QStringLiteral("application/x-msdownload"),
                                      QStringLiteral("application/x-msi"),
                                      QStringLiteral("application/x-mswinurl"),
                                      QStringLiteral("application/vnd.microsoft.portable-executable")};
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(name, head);
    return types.contains(type.name());
}
} // namespace

bool Startable::isByName(const QString &name)
{
    static const QStringList endings = {
        QStringLiteral("appimage"), QStringLiteral("bat"), QStringLiteral("cmd"), QStringLiteral("com"),
        QStringLiteral("desktop"),  QStringLiteral("exe"), QStringLiteral("jar"), QStringLiteral("jnlp"),
        QStringLiteral("lnk"),      QStringLiteral("msi"), QStringLiteral("pif"), QStringLiteral("ps1"),
        QStringLiteral("scr"),      QStringLiteral("url"), QStringLiteral("vbs"), QStringLiteral("wsf")};
    const QString ending = name.section(QLatin1Char('.'), -1).trimmed().toLower();
    return name.contains(QLatin1Char('.')) && endings.contains(ending);
}

Startable::Verdict Startable::verdictOn(const QString &path)
{
    if (!path.startsWith(QLatin1Char('/')) || path.contains(QChar(QChar::Null)))
        return Unopenable;
    const QFileInfo info(path);
    if (info.isDir() || !info.exists())
        return Harmless;
    if (!info.isFile())
        return Unopenable;
    const QFileInfo target(info.canonicalFilePath());
    const QStringList names = {info.fileName(), target.fileName()};
    QByteArray head;
    const bool isRead = readHead(target.filePath(), head);
    const bool isProgram =
        std::any_of(names.cbegin(), names.cend(),
                    [&](const QString &name) { return isByName(name) || isStartedByType(name, head); }) ||
        (info.isExecutable() && (!isRead || runs(target.fileName(), head)));
    return isProgram ? Program : Harmless;
}
