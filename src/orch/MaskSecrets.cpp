#include "orch/MaskSecrets.h"

#include "app/SecretNames.h"
#include "orch/JsonUtil.h"

#include <QJsonDocument>

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

int skipSpace(const QByteArray& text, int at)
{
    while (at < text.size() && isSpace(text[at]))
        ++at;
    return at;
}

/// The position after the closing quote of the string that opens at `at`, or the end.
int afterString(const QByteArray& text, int at)
{
    for (++at; at < text.size(); ++at) {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == '"')
            return at + 1;
    }
    return text.size();
}

/// The position after the value that begins at `at`: a string, a bracketed value, or whatever
/// stands before the next separator.
int afterValue(const QByteArray& text, int at)
{
    int depth = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '"') {
            at = afterString(text, at);
            if (depth == 0)
                return at;
            continue;
        }
        if (depth == 0 && (c == ',' || c == '}' || c == ']'))
            return at;
        if (c == '{' || c == '[')
            ++depth;
        else if ((c == '}' || c == ']') && --depth == 0)
            return at + 1;
        ++at;
    }
    return text.size();
}

QByteArray withoutSecretValues(const QByteArray& text)
{
    QByteArray shown;
    shown.reserve(text.size());
    int at = 0;
    while (at < text.size()) {
        if (text[at] != '"') {
            shown += text[at++];
            continue;
        }
        const int end = afterString(text, at);
        shown += text.mid(at, end - at);
        const int colon = skipSpace(text, end);
        if (colon < text.size() && text[colon] == ':' &&
            isSecretName(text.mid(at + 1, end - at - 2))) {
            shown += ":\"***\"";
            at = afterValue(text, skipSpace(text, colon + 1));
        } else {
            at = end;
        }
    }
    return shown;
}

} // namespace

QString maskSecrets(const QByteArray& body)
{
    QString shown = QString::fromUtf8(withoutSecretValues(body.left(kLogBodyLimit)));
    if (body.size() > kLogBodyLimit)
        shown += QStringLiteral("... (%1 bytes)").arg(body.size());
    return shown;
}

QByteArray withoutPassword(const QByteArray& body)
{
    QJsonObject object = JsonUtil::object(body);
    object.remove(QStringLiteral("password"));
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
