#include "branding/LogoChecker.h"
#include "branding/LogoPicture.h"
#include "window/login/LoginScene.h"

constexpr char kList[] = "/api/mobile/v2/getCustomerLogoUrl";
constexpr char kRound[] = "/files/logos/orvek-round.png";
constexpr char kMain[] = "/files/logos/logo.png";
constexpr char kAnother[] = "logores/2002/logo.png";

/// The customer's logos: whatever comes of them, the login goes on.
class LogosTest : public LoginScene
{
    Q_OBJECT

private slots:
    void init() override
    {
        LoginScene::init();
        give("{'orvek-round.png':{'width':100,'height':100},"
             "'logo.png':{'width':640,'height':80}}");
    }

    void faults_data()
    {
        // Requests for the main logo, its width, and what the log says.
        const auto row = columns<QString, QByteArray, int, int, QString>("path", "fault", "asked",
                                                                         "width", "log");
        row("none", "", "", 1, 640, "File logo.png download successfully.");
        row("no list", kList, "{'status':404}", 0, 0, "6002 The connection");
        row("list: refused", kList, "{'status':500,'body':'oops'}", 0, 0,
            "customer logo resource content: oops");
        row("list: nothing", kList, "{'body':''}", 0, 0, "Custom Logo is up to date.");
        row("list: no array", kList, "{'body':'{}'}", 0, 0, "is invalid json array. ");
        row("list: no objects", kList, "{'body':'[1,null,{}]'}", 0, 0, "is up to date.");
        row("404 once", kMain, "{'status':404,'times':1}", 2, 640, "logo.png. Error code 404");
        row("404 twice", kMain, "{'status':404}", 2, 0, "logo.png. Error code 404");
        row("another file", kMain, "{'body':'another'}", 2, 0, "MD5 checksum failed on the file");
        row("huge", kMain, "{'hugeBytes':9000000}", 2, 0, "logo.png. Error code 200");
    }

    void faults()
    {
        const auto [path, fault, requests, width, text] =
            fetched<QString, QByteArray, int, int, QString>("path", "fault", "asked", "width",
                                                            "log");
        if (!path.isEmpty())
            answer(path, Fault::fromJson(QJsonDocument::fromJson(json(fault)).object()));
        toLoginPage();
        QCOMPARE(asked(kMain), requests);
        QCOMPARE(logo(kMainLogo).width(), width);
        QCOMPARE(logo(kRoundLogo).isNull(), path == kList);
        QVERIFY2(logged(text), qPrintable(scene().log()));
    }

    void lists_data()
    {
        const auto row = columns<QByteArray, int, bool>("logos", "asked", "shown");
        row("no address", "{'logo.png':{}}", 0, false);
        row("half a picture", "{'logo.png':{'width':99,'height':9,'cut':true}}", 1, false);
        row("4096 pixels", "{'logo.png':{'width':4096,'height':1}}", 1, true);
        row("4097 pixels", "{'logo.png':{'width':4097,'height':1}}", 1, false);
        row("a foreign name", "{'../../evil':{'width':9,'height':9}}", 0, false);
        row("none", "{}", 0, false);
    }

    void lists()
    {
        give(cell<QByteArray>("logos"));
        toLoginPage();
        QCOMPARE(asked(kMain), cell<int>("asked"));
        QCOMPARE(logo(kMainLogo).isNull(), !cell<bool>("shown"));
        QVERIFY(!QFile::exists(scene().file("evil")));
    }

    void theCacheServesTheNextLogin()
    {
        QDir().mkpath(scene().file("logores/2002"));
        QVERIFY(QFile::copy(":/Ostrana/res/veltaro/logo.png", scene().file(kAnother)));
        const QByteArray before = scene().read(kAnother);
        toLoginPage();
        window.reset();
        service().clear();
        toLoginPage();
        QCOMPARE(asked(kMain) + asked(kRound), 0);
        QCOMPARE(logo(kMainLogo).width(), 640);

        // A list that does not come: what is there is used.
        window.reset();
        answer(kList, Fault::dropped());
        toLoginPage();
        QCOMPARE(logo(kMainLogo).width(), 640);
        QCOMPARE(scene().read(kAnother), before);
    }

    void aCacheThatCannotBeUsed_data()
    {
        const auto row = columns<bool>("link");
        row("a file in its place", false);
        row("a link to elsewhere", true);
    }

    void aCacheThatCannotBeUsed()
    {
        const QString place = scene().file("logores");
        if (cell<bool>("link")) {
            QDir(scene().folder()).mkdir("elsewhere");
            QVERIFY(QFile::link(scene().file("elsewhere"), place));
        } else {
            QVERIFY(QFile(place).open(QIODevice::WriteOnly));
        }
        toLoginPage();
        QCOMPARE(logo(kMainLogo).width(), 640);
        QVERIFY(QDir(scene().file("elsewhere")).isEmpty());
    }

    void pictures_data()
    {
        const auto row = columns<QSize, int, QSize>("picture", "ratio", "pixels");
        row("as it is", QSize(100, 20), 1, QSize(100, 20));
        row("wide", QSize(640, 80), 1, QSize(152, 19));
        row("tall", QSize(80, 320), 1, QSize(10, 40));
        row("wide, double", QSize(640, 80), 2, QSize(304, 38));
        row("small, double", QSize(100, 20), 2, QSize(100, 20));
        row("a line", QSize(4096, 1), 1, QSize(152, 1));
    }

    void pictures()
    {
        QPixmap picture(cell<QSize>("picture"));
        picture.fill(Qt::red);
        const QPixmap shown = logopicture::fitted(picture, {152, 40}, cell<int>("ratio"));
        QCOMPARE(shown.size(), cell<QSize>("pixels"));
        QVERIFY(shown.width() / shown.devicePixelRatio() <= 152);
    }

private:
    /// The customer has these logos.
    void give(const QByteArray& logos)
    {
        service().edit([&](sim::Scenario& now) {
            now.authConfigReply.insert("supportCusResource", true);
            now.logos = QJsonDocument::fromJson(json(logos)).object();
        });
    }

    static QPixmap logo(const char* name) { return LogoChecker::instance()->logoPixmap(name); }
};

QTEST_MAIN(LogosTest)
#include "LogosTest.moc"
