#include "res/Font.h"
#include "res/Pictures.h"

#include <QDirIterator>
#include <QFile>
#include <QImageReader>
#include <QRawFont>
#include <QRegularExpression>
#include <QResource>
#include <QTest>

/// What the build put into the resource tree, and whether the sources ask for anything that is
/// not there.
class ResourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fontIsUsableInPlace();
    void picturesComeInTwoSizes();
    void iconsHoldTheirSizes_data();
    void iconsHoldTheirSizes();
    void everythingAskedForExists();
};

namespace {

const QString kRoot = QStringLiteral(":/Ostrana/res/");

bool isBlank(const QImage& image)
{
    QImage nothing(image.size(), QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return image.convertToFormat(QImage::Format_ARGB32) == nothing;
}

QStringList captured(const QString& text, const QString& pattern)
{
    QStringList result;
    auto matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        result.append(matches.next().captured(1));
    return result;
}

/// The names below kRoot that a source or style sheet asks for.
QStringList namesIn(const QString& text)
{
    QStringList names =
        captured(text, QStringLiteral(":/Ostrana/res/([\\w/.@-]+\\.(?:png|ico|qss|otf))"));
    names += captured(text, QStringLiteral("pictureIcon\\(\\s*\\w+\\(\"([^\"]+)\""));
    const QString states = QStringLiteral("(?:stateIcon\\(\\s*\\w+|new IconButton)\\(\"([^\"]+)\"");
    for (const QString& base : captured(text, states))
        names << base + QStringLiteral(".png") << base + QStringLiteral("_on.png");
    return names;
}

} // namespace

void ResourcesTest::initTestCase()
{
    initPictures();
    initFont();
}

// The font database keeps no copy only while the resource's bytes are the font itself.
void ResourcesTest::fontIsUsableInPlace()
{
    const QResource font(kRoot + QStringLiteral("font/NotoSansSC-Regular.otf"));
    QVERIFY(font.isValid());
    QCOMPARE(int(font.compressionAlgorithm()), int(QResource::NoCompression));
    const auto* bytes = reinterpret_cast<const char*>(font.data());
    QCOMPARE(QByteArray(bytes, 4), QByteArray("OTTO"));
    const QRawFont loaded(QByteArray::fromRawData(bytes, int(font.size())), 12);
    QVERIFY(loaded.isValid());
    for (const QChar c : QStringLiteral("Aé0。：连接隧道…"))
        QVERIFY2(loaded.supportsCharacter(c), qPrintable(QString(c)));
}

void ResourcesTest::picturesComeInTwoSizes()
{
    int pictures = 0;
    QDirIterator files(kRoot, {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = files.next();
        if (name.contains(QLatin1Char('@')))
            continue;
        ++pictures;
        const QImage single(name);
        const QImage twice(
            QString(name).replace(QStringLiteral(".png"), QStringLiteral("@2x.png")));
        QVERIFY2(!single.isNull(), qPrintable(name));
        QCOMPARE(twice.size(), single.size() * 2);
        QVERIFY2(!isBlank(single), qPrintable(name));
    }
    QVERIFY(pictures > 0);
}

void ResourcesTest::iconsHoldTheirSizes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVector<QSize>>("sizes");
    const auto squares = [](const QVector<int>& sides) {
        QVector<QSize> sizes;
        for (const int side : sides)
            sizes.append(QSize(side, side));
        return sizes;
    };
    QTest::newRow("window") << QStringLiteral("veltaro/veltaro.ico")
                            << squares({16, 20, 24, 32, 48, 64, 128});
    QTest::newRow("fold") << QStringLiteral("btnup.ico") << squares({16, 24, 32});
    QTest::newRow("unfold") << QStringLiteral("btndown.ico") << squares({16, 24, 32});
    QTest::newRow("back") << QStringLiteral("btnleft.ico")
                          << QVector<QSize>{{6, 12}, {12, 24}, {24, 48}};
}

void ResourcesTest::iconsHoldTheirSizes()
{
    QFETCH(QString, name);
    QImageReader reader(kRoot + name);
    QVector<QSize> sizes;
    do {
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), qPrintable(reader.errorString()));
        QVERIFY(!isBlank(image));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        sizes.append(image.size());
    } while (reader.jumpToNextImage());
    QTEST(sizes, "sizes");
}

void ResourcesTest::everythingAskedForExists()
{
    QCOMPARE(
        namesIn(QStringLiteral("pictureIcon(QStringLiteral(\"a.png\")) stateIcon(QStringLiteral("
                               "\"b\")) url(:/Ostrana/res/c/d.ico)"))
            .size(),
        4);
    QStringList missing;
    int asked = 0;
    QDirIterator files(QStringLiteral(VELTARO_SOURCES),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.qss")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const QString& name : namesIn(QString::fromUtf8(file.readAll()))) {
            ++asked;
            if (!QFile::exists(kRoot + name))
                missing.append(file.fileName() + QStringLiteral(": ") + name);
        }
    }
    QVERIFY(asked > 0);
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

QTEST_MAIN(ResourcesTest)
#include "ResourcesTest.moc"
