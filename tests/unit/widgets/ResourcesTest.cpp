#include "res/Font.h"
#include "res/Pictures.h"
#include "support/Rows.h"
#include "unit/Files.h"
#include "widgets/Style.h"

#include <QIcon>
#include <QRawFont>

namespace {

const QString kRoot = ":/Ostrana/res/";

bool isBlank(const QImage& image)
{
    QImage nothing(image.size(), QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return image.convertToFormat(QImage::Format_ARGB32) == nothing;
}

/// The names below kRoot that a source or style sheet asks for.
QStringList namesIn(const QString& text)
{
    static const QRegularExpression files(
        "(?:pictureIcon\\(\\s*\\w+\\(\"|:/Ostrana/res/)([\\w/.@-]+\\.(?:png|ico|qss|otf))");
    static const QRegularExpression states(
        "(?:stateIcon\\(\\s*\\w+|new IconButton)\\(\"([^\"]+)\"");
    QStringList names;
    for (auto matches = files.globalMatch(text); matches.hasNext();)
        names << matches.next().captured(1);
    for (auto matches = states.globalMatch(text); matches.hasNext();) {
        const QString base = matches.next().captured(1);
        names << base + ".png" << base + "_on.png";
    }
    return names;
}

} // namespace

/// What the build put into the resource tree, and whether the sources ask for anything that is
/// not there.
class ResourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initPictures();
        initFont();
    }

    // The font database keeps no copy only while the resource's bytes are the font itself.
    void fontIsUsableInPlace()
    {
        const QResource font(kRoot + "font/NotoSansSC-Regular.otf");
        QVERIFY(font.isValid());
        QCOMPARE(int(font.compressionAlgorithm()), int(QResource::NoCompression));
        const auto* bytes = reinterpret_cast<const char*>(font.data());
        QCOMPARE(QByteArray(bytes, 4), QByteArray("OTTO"));
        const QRawFont loaded(QByteArray::fromRawData(bytes, int(font.size())), 12);
        for (const QChar c : QString("Aé0。：连接隧道…"))
            QVERIFY2(loaded.supportsCharacter(c), qPrintable(QString(c)));
    }

    void picturesComeInTwoSizes()
    {
        int pictures = 0;
        QDirIterator files(kRoot, {"*.png"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString name = files.next();
            if (name.contains('@'))
                continue;
            ++pictures;
            const QImage single(name);
            const QImage twice(QString(name).replace(".png", "@2x.png"));
            QVERIFY2(!single.isNull() && !isBlank(single), qPrintable(name));
            QCOMPARE(twice.size(), single.size() * 2);
        }
        QVERIFY(pictures > 0);
    }

    void iconsHoldTheirSizes()
    {
        const auto check = [](const char* name, const QVector<int>& heights) {
            const QIcon icon = pictureIcon(name);
            QVector<int> found;
            for (const QSize& size : icon.availableSizes()) {
                const QImage image = icon.pixmap(size).toImage();
                QVERIFY2(!isBlank(image), name);
                QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
                found.append(image.height());
            }
            QCOMPARE(found, heights);
        };
        check("veltaro/veltaro.ico", {16, 20, 24, 32, 48, 64, 128});
        check("btnup.ico", {16, 24, 32});
        check("btndown.ico", {16, 24, 32});
        check("btnleft.ico", {12, 24, 48});
    }

    void everythingAskedForExists()
    {
        QCOMPARE(namesIn("pictureIcon(QStringLiteral(\"a.png\")) stateIcon(QStringLiteral(\"b\"))"
                         " url(:/Ostrana/res/c/d.ico)"),
                 (QStringList{"a.png", "c/d.ico", "b.png", "b_on.png"}));
        int asked = 0;
        QDirIterator files(VELTARO_SOURCES, {"*.cpp", "*.h", "*.qss"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString source = files.next();
            for (const QString& name : namesIn(readFile(source))) {
                ++asked;
                const QString file = QString(name).replace(".ico", ".argb");
                QVERIFY2(QFile::exists(kRoot + file), qPrintable(source + ": " + name));
            }
        }
        QVERIFY(asked > 0);
    }
};

QTEST_MAIN(ResourcesTest)
#include "ResourcesTest.moc"
