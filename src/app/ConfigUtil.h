#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

/// One setting: a line of the table SettingsKeys.def.
struct SettingKey
{
    const char* stored;  ///< the key in the file
    const char* type;    ///< "text", "integer", "boolean" or "list of text"
    const char* initial; ///< what readers pass as default, as text
    const char* meaning;
};

/// The settings that the client keeps between runs: one INI file per user,
/// <configuration folder>/Veltaro/setting.conf, readable by its owner alone from the moment it
/// exists. Nothing is cached: a value written anywhere is seen by the next read anywhere.
/// Any thread.
class ConfigUtil
{
public:
    // One constant per line of the table: ConfigUtil::TOKEN, ConfigUtil::AUTHURL, ...
#define VELTARO_SETTING(constant, stored, type, initial, meaning) static const QString constant;
#include "app/SettingsKeys.def"
#undef VELTARO_SETTING

    /// Every key with its type, default and meaning, in the order of the constants.
    static const QVector<SettingKey>& keys();

    /// Determines and creates the settings folder (mode 0700) and tightens an existing one.
    /// Called once by the entry point before anything reads settings. Failure is not reported:
    /// the program runs on with defaults.
    static void createConfigPath();

    /// The settings folder with a trailing "/"; empty before createConfigPath().
    static QString getConfigPath();

    /// Stores one value. A value that cannot be written is lost.
    static void writeValue(const QString& key, const QVariant& value);

    /// The stored value, or `defaultValue` when the key is absent.
    static QVariant getvalue(const QString& key, const QVariant& defaultValue);

    /// A stored text; empty when the key is absent.
    static QString savedText(const QString& key);

private:
    static QString m_configPath;
};

/// Names of the dynamic properties of the application object that hold values for the life of
/// the process.
namespace appproperty {
constexpr char kDeepinShadowEnabled[] = "DeepinShadowEnabled";     ///< bool
constexpr char kOrchUpgradeNoticeTime[] = "OrchUpgradeNoticeTime"; ///< qlonglong, minutes
constexpr char kAllowChangePass[] = "allowChangePass";             ///< bool
constexpr char kOtpMiddleToken[] = "otpMiddleToken";               ///< text, secret
} // namespace appproperty
