#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Tolerant readers of top-level members of a JSON object. A body that is empty, does not parse
/// or is not an object, a missing member, and a member of another JSON type all give the default;
/// nothing is converted between types (a number sent as text is not a number).
///
/// Each function that takes a raw body parses it anew; who needs several members parses once with
/// object() and uses the overloads. Any thread.
class JsonUtil
{
public:
    /// The top-level object of a body, empty when there is none.
    static QJsonObject object(const QByteArray& json);

    static QString getQString(const QJsonObject& object, const QString& key, const QString& def);
    static QString getQString(const QByteArray& json, const QString& key, const QString& def);

    /// A number that is not whole or does not fit gives 0.
    static int getInt(const QJsonObject& object, const QString& key, int def);
    static int getInt(const QByteArray& json, const QString& key, int def);

    static bool getBool(const QJsonObject& object, const QString& key, bool def);
    static bool getBool(const QByteArray& json, const QString& key, bool def);

    /// The whole part of a number; a negative number gives 0, one beyond 64 bits the largest
    /// value.
    static qulonglong getULongLong(const QJsonObject& object, const QString& key, long long def);
    static qulonglong getULongLong(const QByteArray& json, const QString& key, long long def);

    static QJsonObject getObject(const QJsonObject& object, const QString& key);
    static QJsonObject getObject(const QByteArray& json, const QString& key);

    static QJsonArray getArray(const QJsonObject& object, const QString& key);
    static QJsonArray getArray(const QByteArray& json, const QString& key);

    /// An array's elements as texts joined with ","; an element that is no text is empty.
    static QString getArrayToString(const QJsonObject& object, const QString& key);
    static QString getArrayToString(const QByteArray& json, const QString& key);

    /// An array's elements as texts; an element that is no text is empty.
    static QStringList getArrayToStringList(const QJsonObject& object, const QString& key);
    static QStringList getArrayToStringList(const QByteArray& json, const QString& key);

    /// The body with an existing member set to a text. A body without the member is returned
    /// unchanged.
    static QByteArray setQString(const QByteArray& json, const QString& key, const QString& value);
};
