#pragma once

#include <QTemporaryDir>

/**
 * Points every QSettings of the process at an INI file in a temporary folder, so that a test never reads or
 * writes the user's own. Make one before the first QSettings; the folder goes with it.
 */
class SettingsSandbox
{
public:
    SettingsSandbox();

    /** Forgets all that was stored so far. */
    static void clear();

private:
    QTemporaryDir m_dir;
};
