#include "app/ConfigUtil.h"

#include "app/Product.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#define VELTARO_SETTING(constant, stored, type, initial, meaning)                                  \
    const QString ConfigUtil::constant = QStringLiteral(stored);
#include "app/SettingsKeys.def"
#undef VELTARO_SETTING

QString ConfigUtil::m_configPath;

const QVector<SettingKey>& ConfigUtil::keys()
{
    static const QVector<SettingKey> table = {
#define VELTARO_SETTING(constant, stored, type, initial, meaning) {stored, type, initial, meaning},
#include "app/SettingsKeys.def"
#undef VELTARO_SETTING
    };
    return table;
}

namespace {

QByteArray typeOf(const QString& key)
{
    for (const SettingKey& known : ConfigUtil::keys()) {
        if (key == QLatin1String(known.stored))
            return known.type;
    }
    return {};
}

// A value that somebody spoilt counts as absent, so that its reader takes the default.
bool isReadable(const QVariant& stored, const QByteArray& type)
{
    if (!stored.isValid())
        return false;
    if (type == "integer") {
        bool number = false;
        stored.toInt(&number);
        return number;
    }
    if (type == "boolean") {
        static const QStringList words{QStringLiteral("true"), QStringLiteral("false"),
                                       QStringLiteral("1"), QStringLiteral("0")};
        return words.contains(stored.toString());
    }
    return true;
}

// A text that was edited by hand may hold bare commas, which read as a list.
QVariant inType(const QVariant& stored, const QByteArray& type)
{
    if (type == "text" && stored.type() == QVariant::StringList)
        return stored.toStringList().join(QStringLiteral(", "));
    return stored;
}

QSettings* openSettings()
{
    return new QSettings(QLatin1String(product::kName) + QLatin1String("/setting"));
}

// QSettings makes a new file with the process's mask and narrows it afterwards; making it here
// first leaves no moment at which others could read it.
void createPrivately(const QString& file)
{
    const int fd = ::open(QFile::encodeName(file).constData(),
                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (fd >= 0)
        ::close(fd);
    else
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace

void ConfigUtil::createConfigPath()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::ConfigLocation);
    if (!base.endsWith(QLatin1Char('/')))
        base += QLatin1Char('/');
    m_configPath = base + QLatin1String(product::kName) + QLatin1Char('/');

    QDir().mkpath(base);
    const QByteArray folder = QFile::encodeName(m_configPath);
    if (::mkdir(folder.constData(), S_IRWXU) != 0)
        QFile::setPermissions(m_configPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    createPrivately(m_configPath + QStringLiteral("setting.conf"));
}

QString ConfigUtil::getConfigPath()
{
    return m_configPath;
}

void ConfigUtil::writeValue(const QString& key, const QVariant& value)
{
    const QScopedPointer<QSettings> settings(openSettings());
    settings->setValue(key, value);
}

QVariant ConfigUtil::getvalue(const QString& key, const QVariant& defaultValue)
{
    const QScopedPointer<QSettings> settings(openSettings());
    const QVariant stored = settings->value(key);
    return isReadable(stored, typeOf(key)) ? inType(stored, typeOf(key)) : defaultValue;
}

QString ConfigUtil::savedText(const QString& key)
{
    return getvalue(key, QString()).toString();
}
