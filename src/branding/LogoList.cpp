#include "branding/LogoList.h"

#include "orch/JsonUtil.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

std::optional<LogoInfos> parseLogoList(const QByteArray& body, bool& isJson)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    isJson = !document.isNull();
    if (!document.isArray())
        return std::nullopt;
    LogoInfos infos;
    const QJsonArray elements = document.array();
    for (const QJsonValue& element : elements) {
        const QJsonObject object = element.toObject();
        const auto text = [&object](const char* key) {
            return JsonUtil::getQString(object, QLatin1String(key), QString());
        };
        LogoInfo info;
        info.clientName = text("clientName");
        if (info.clientName != QLatin1String(kRoundLogo) &&
            info.clientName != QLatin1String(kMainLogo))
            continue; // it would become a file name
        info.keyName = text("keyName");
        info.url = text("url");
        info.md5 = text("md5");
        info.isSucc = JsonUtil::getBool(object, QStringLiteral("success"), true);
        infos.insert(info.clientName, info);
    }
    return infos;
}

QString logoMd5(const QByteArray& file)
{
    return QString::fromLatin1(QCryptographicHash::hash(file, QCryptographicHash::Md5).toHex());
}
