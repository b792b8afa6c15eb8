#include "app/settings/settingsmender.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryFile>

#include <exception>

namespace {
bool isReadable(const QSettings &store)
{
    try {
        store.allKeys();
        return true;
    } catch (const std::exception &) {
        return false;
    }
}

bool isReadable(const QByteArray &lines)
{
    // The reader of the toolkit itself decides, on a store that holds nothing else.
    QTemporaryFile alone;
    if (!alone.open() || alone.write(lines) != lines.size() || !alone.flush())
        return false;
    return isReadable(QSettings(alone.fileName(), QSettings::IniFormat));
}

QByteArray readableLines(QFile &store)
{
    QByteArray lines;
    while (!store.atEnd()) {
        const QByteArray line = store.readLine();
        // Only such values are more than texts.
        if (!line.contains("@Variant(") || isReadable("[General]\n" + line))
            lines += line;
        else
            qDebug() << "Unreadable setting:" << line.left(line.indexOf('='));
    }
    return lines;
}
} // namespace

void SettingsMender::run()
{
    const QSettings settings;
    if (isReadable(settings))
        return;
    QFile store(settings.fileName());
    if (!store.open(QIODevice::ReadOnly))
        return;
    // Each line by itself first: most users lose one list and keep all their other settings.
    const QByteArray lines = readableLines(store);
    QSaveFile mended(store.fileName());
    if (isReadable(lines) && mended.open(QIODevice::WriteOnly) && mended.write(lines) == lines.size() &&
        mended.commit())
        return;
    // Not deleted: somebody who knows the format may still save something out of it.
    QFile::remove(store.fileName() + QLatin1String(".damaged"));
    store.rename(store.fileName() + QLatin1String(".damaged"));
}
