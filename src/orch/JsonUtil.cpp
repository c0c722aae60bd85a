#include "orch/JsonUtil.h"

#include <QJsonDocument>
#include <QJsonValue>
#include <QVariant>

#include <limits>

QJsonObject JsonUtil::object(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

QString JsonUtil::getQString(const QJsonObject& object, const QString& key, const QString& def)
{
    return object.value(key).toString(def);
}

int JsonUtil::getInt(const QJsonObject& object, const QString& key, int def)
{
    const QJsonValue value = object.value(key);
    return value.isDouble() ? value.toInt(0) : def;
}

bool JsonUtil::getBool(const QJsonObject& object, const QString& key, bool def)
{
    return object.value(key).toBool(def);
}

qulonglong JsonUtil::getULongLong(const QJsonObject& object, const QString& key, long long def)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        return static_cast<qulonglong>(def);
    // Whole numbers are held as 64-bit integers, which a double would round.
    const QVariant number = value.toVariant();
    if (number.type() == QVariant::LongLong)
        return static_cast<qulonglong>(qMax(number.toLongLong(), 0LL));
    const double real = value.toDouble();
    constexpr double kBeyond = 18446744073709551616.0; // 2^64
    if (!(real > 0))
        return 0;
    return real < kBeyond ? static_cast<qulonglong>(real) : std::numeric_limits<qulonglong>::max();
}

QJsonObject JsonUtil::getObject(const QJsonObject& object, const QString& key)
{
    return object.value(key).toObject();
}

QJsonArray JsonUtil::getArray(const QJsonObject& object, const QString& key)
{
    return object.value(key).toArray();
}

QString JsonUtil::getArrayToString(const QJsonObject& object, const QString& key)
{
    return getArrayToStringList(object, key).join(QLatin1Char(','));
}

QStringList JsonUtil::getArrayToStringList(const QJsonObject& object, const QString& key)
{
    const QJsonArray array = getArray(object, key);
    QStringList texts;
    texts.reserve(array.size());
    for (const QJsonValue& element : array)
        texts.append(element.toString());
    return texts;
}

QString JsonUtil::getQString(const QByteArray& json, const QString& key, const QString& def)
{
    return getQString(object(json), key, def);
}

int JsonUtil::getInt(const QByteArray& json, const QString& key, int def)
{
    return getInt(object(json), key, def);
}

bool JsonUtil::getBool(const QByteArray& json, const QString& key, bool def)
{
    return getBool(object(json), key, def);
}

qulonglong JsonUtil::getULongLong(const QByteArray& json, const QString& key, long long def)
{
    return getULongLong(object(json), key, def);
}

QJsonObject JsonUtil::getObject(const QByteArray& json, const QString& key)
{
    return getObject(object(json), key);
}

QJsonArray JsonUtil::getArray(const QByteArray& json, const QString& key)
{
    return getArray(object(json), key);
}

QString JsonUtil::getArrayToString(const QByteArray& json, const QString& key)
{
    return getArrayToString(object(json), key);
}

QStringList JsonUtil::getArrayToStringList(const QByteArray& json, const QString& key)
{
    return getArrayToStringList(object(json), key);
}

QByteArray JsonUtil::setQString(const QByteArray& json, const QString& key, const QString& value)
{
    QJsonObject body = object(json);
    const auto member = body.find(key);
    if (member == body.end())
        return json;
    *member = value;
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}
