#include "login/PrivacyText.h"

#include <QTest>

class PrivacyTextTest : public QObject
{
    Q_OBJECT

private slots:
    void updateLine_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("chinese");

        const auto row = [](const char* version, const char* english, const char* chinese) {
            QTest::newRow(*version ? version : "empty")
                << QString::fromUtf8(version) << QString::fromUtf8(english)
                << QString::fromUtf8(chinese);
        };
        row("20240314", "Updated on March 14, 2024", "更新与2024年03月14日");
        row("20240304", "Updated on March 04, 2024", "更新与2024年03月04日");
        row("20230101", "Updated on January 01, 2023", "更新与2023年01月01日");
        row("20251231", "Updated on December 31, 2025", "更新与2025年12月31日");
        row("20241314", "", "更新与2024年13月14日");
        row("20240014", "", "更新与2024年00月14日");
        row("2024ab14", "", "更新与2024年ab月14日");
        row("%1%20614", "Updated on June 14, %1%2", "更新与%1%2年06月14日");
        row("newest", "", "");
        row("2024031", "", "");
        row("202403145", "", "");
        row("", "", "");
    }

    void updateLine()
    {
        QFETCH(QString, version);
        QTEST(privacyUpdateText(version, false), "english");
        QTEST(privacyUpdateText(version, true), "chinese");
    }
};

QTEST_GUILESS_MAIN(PrivacyTextTest)
#include "PrivacyTextTest.moc"
