#pragma once

#include "app/ConfigUtil.h"

#include <QTemporaryDir>

/// A settings folder of the test's own. Made before anything reads settings.
class SettingsHome
{
public:
    SettingsHome()
    {
        qputenv("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit());
        ConfigUtil::createConfigPath();
    }

private:
    QTemporaryDir m_folder;
};
