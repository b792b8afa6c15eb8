#include "ui/views/startable.h"

#include "fileops/regularfile.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace {
/** The disks of other systems call every file executable, so what it holds is asked, too. */
bool runs(const QFileInfo &info)
{
    constexpr int headSize = 4096;
    RegularFile file;
    QByteArray head(headSize, '\0');
    if (!file.open(info.filePath()))
        return true;
    head.resize(int(qMax(qint64(0), file.read(head.data(), head.size()))));
    if (head.startsWith("#!") || head.startsWith("\177ELF") || head.startsWith("MZ"))
        return true;
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(info.fileName(), head);
    return type.isDefault() || type.inherits(QStringLiteral("application/x-executable"));
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
    const bool isProgram =
        isByName(info.fileName()) || isByName(target.fileName()) || (info.isExecutable() && runs(target));
    return isProgram ? Program : Harmless;
}
