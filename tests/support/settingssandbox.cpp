#include "tests/support/settingssandbox.h"

#include <QCoreApplication>
#include <QSettings>

SettingsSandbox::SettingsSandbox()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Vorna tests"));
    QCoreApplication::setApplicationName(QStringLiteral("Vorna tests"));
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, m_dir.path());
}

void SettingsSandbox::clear()
{
    QSettings settings;
    settings.clear();
    settings.sync();
}
