// A filter document on its way to the datapath: cleaned, merged with the servers' addresses and
// written, against reading the same document and writing it back.
#include "Measure.h"

#include "main/FilterDocument.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

QByteArray documentOf(int entries)
{
    QJsonArray white;
    QJsonArray black;
    for (int i = 0; i < entries; ++i) {
        const QString address = QStringLiteral("10.%1.%2.%3/32")
                                    .arg((i >> 17) & 0xff)
                                    .arg((i >> 9) & 0xff)
                                    .arg((i >> 1) & 0xff);
        (i % 2 == 0 ? white : black).append(address);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("code"), 0},
                                     {QStringLiteral("ipSetMode"), 0},
                                     {QStringLiteral("whiteIpSet"), white},
                                     {QStringLiteral("blackIpSet"), black}})
        .toJson(QJsonDocument::Compact);
}

bool save(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

void benchFilter(const Report& report)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("filterConfig.conf"));
    const QStringList servers = {QStringLiteral("192.0.2.1"), QStringLiteral("192.0.2.2")};
    const int sizes[] = {10000, 100000, 1000000};
    for (const int entries : sizes) {
        const QByteArray document = documentOf(entries);
        bool allWritten = true;
        const Pair times = interleaved(
            entries > 100000 ? 3 : 9,
            [&] {
                FilterDocument filter(document);
                filter._removeDuplicatesJson();
                filter._rebuildFilterJson(servers);
                allWritten &= save(path, filter.bytes() + '\n');
            },
            [&] {
                const QJsonDocument parsed = QJsonDocument::fromJson(document);
                allWritten &= save(path, parsed.toJson(QJsonDocument::Compact));
            });
        report({allWritten ? QStringLiteral("filter document of %1 entries").arg(entries)
                           : QStringLiteral("filter document of %1: NOT WRITTEN").arg(entries),
                times.subject, times.floor, QStringLiteral("ms"), QStringLiteral("within 5")});
    }
}
