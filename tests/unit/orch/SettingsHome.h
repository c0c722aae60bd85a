#pragma once

#include "app/ConfigUtil.h"

#include <QTemporaryDir>

/// A settings folder of the test's own. Made before anything reads settings.
struct SettingsHome : QTemporaryDir
{
    SettingsHome()
    {
        qputenv("XDG_CONFIG_HOME", path().toLocal8Bit());
        ConfigUtil::createConfigPath();
    }
};
