#include "fileops/files/filenames.h"

#include <QFile>
#include <QFileInfo>

QString Database::pathIn(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool Database::isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QString Database::uniqueFileName(const QString &name, const QDir &dir)
{
    int number = 1;
    return uniqueFileName(
        name, [&dir](const QString &tried) { return isTaken(pathIn(dir.path(), tried)); }, number);
}

QString Database::uniqueFileName(const QString &name, const std::function<bool(const QString &)> &isTaken,
                                 int &number)
{
    const int dot = name.indexOf(QLatin1Char('.'));
    const int end = dot < 0 ? name.size() : dot;
    QString tried = name;
    for (; isTaken(tried); ++number)
        tried = QString(name.leftRef(end) + QLatin1Char('_') + QString::number(number) + name.midRef(end));
    return tried;
}

QString Database::fittingFileName(const QString &name, int mostBytes)
{
    constexpr int lettersKept = 60; // of three bytes at most
    return QFile::encodeName(name).size() > mostBytes ? name.right(lettersKept) : name;
}

QString Database::numberableFileName(const QString &name)
{
    constexpr int roomForNumber = 15;
    return fittingFileName(name, mostNameBytes - roomForNumber);
}

QString Database::safeFileName(const QString &name)
{
    QString safe = name.mid(name.lastIndexOf(QLatin1Char('/')) + 1);
    safe.remove(QChar(QChar::Null));
    const bool isUsable = !safe.isEmpty() && safe != QLatin1String(".") && safe != QLatin1String("..");
    return isUsable ? fittingFileName(safe, mostNameBytes) : QStringLiteral("_");
}
