#include "main/DlgMainUi.h"

#include "logview/CustomDelegate.h"
#include "logview/LogView.h"
#include "main/widgeChronometer.h"
#include "settings/WidgetSetting.h"
#include "widgets/IconButton.h"
#include "widgets/Style.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgetParts.h"

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVector>

namespace {

constexpr QSize kWindow(600, 400);
constexpr int kBarWidth = 72;
constexpr int kCentre = 336; // of the area right of the bar
constexpr QRect kPage(96, 88, 480, 296);

QLabel* label(QWidget* parent, const char* name, const QRect& place, const QString& text,
              const char* role)
{
    QLabel* made = makeLabel(parent, name, role, text);
    made->setGeometry(place);
    return made;
}

QLabel* picture(QWidget* parent, const char* name, const QRect& place, const QString& file)
{
    QLabel* made = makePicture(parent, name, file, place.size());
    made->setGeometry(place);
    return made;
}

QPushButton* button(QWidget* parent, const char* name, const QRect& place, const QString& text,
                    const char* role)
{
    QPushButton* made = makeButton(parent, name, role, text);
    made->setGeometry(place);
    made->setAutoDefault(false);
    return made;
}

QPushButton* windowButton(QWidget* parent, const char* name, const char* pictures,
                          const QPoint& place, const QString& title)
{
    auto* made = named(new IconButton(pictures, title, parent), name);
    made->move(place);
    made->setToolTip(title);
    return made;
}

QToolButton* menuButton(QWidget* parent, const char* name, const QString& text, const char* icon)
{
    auto* made = named(new QToolButton(parent), name);
    made->setText(text);
    made->setAccessibleName(text);
    made->setIcon(stateIcon(QLatin1String(icon)));
    made->setIconSize(QSize(24, 24));
    made->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    made->setCheckable(true);
    made->setFocusPolicy(Qt::TabFocus);
    return made;
}

QLabel* pageTitle(QWidget* parent, const char* name, const QString& text)
{
    return label(parent, name, QRect(96, 56, 360, 24), text, "title");
}

} // namespace

DlgMainUi::DlgMainUi(QDialog* window)
{
    window->setFixedSize(kWindow);
    buildLeftBar(window);
    buildHeader(window);
    buildHome(window);
    buildPages(window);
    setTabOrder();
}

void DlgMainUi::buildLeftBar(QDialog* window)
{
    auto* bar = named(new QFrame(window), "leftBar");
    bar->setGeometry(0, 0, kBarWidth, kWindow.height());
    labelRoundLogo = makeLabel(bar, "labelRoundLogo", "");
    labelRoundLogo->setFixedSize(40, 40);
    labelRoundLogo->setAlignment(Qt::AlignCenter);

    toolBtnHome = menuButton(bar, "toolBtnHome", tr("Home"), "home");
    toolBtnSetting = menuButton(bar, "toolBtnSetting", tr("Setting"), "setting");
    toolBtnLog = menuButton(bar, "toolBtnLog", tr("Log"), "log");
    toolBtnQuit = menuButton(bar, "toolBtnQuit", tr("Quit"), "quit");
    // On the way out pressing Escape comes first to mind.
    toolBtnQuit->setShortcut(QKeySequence(Qt::Key_Escape));

    auto* column = new QVBoxLayout(bar);
    column->setContentsMargins(0, 16, 0, 16);
    column->setSpacing(8);
    column->addWidget(labelRoundLogo, 0, Qt::AlignHCenter);
    column->addSpacing(16);
    for (QToolButton* tool : {toolBtnHome, toolBtnSetting, toolBtnLog})
        column->addWidget(tool, 0, Qt::AlignHCenter);
    column->addStretch();
    column->addWidget(toolBtnQuit, 0, Qt::AlignHCenter);
}

void DlgMainUi::buildHeader(QDialog* window)
{
    labelLogo = label(window, "labelLogo", QRect(92, 8, 152, 40), QString(), "");
    labelUserName = label(window, "labelUserName", QRect(300, 14, 180, 20), QString(), "secondary");
    labelUserName->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    btnAbout = windowButton(window, "btnAbout", "about", QPoint(500, 16), tr("About"));
    btnMin = windowButton(window, "btnMin", "min", QPoint(536, 16), tr("Minimise"));
    btnClose = windowButton(window, "btnClose", "close", QPoint(568, 16), tr("Close"));
}

void DlgMainUi::buildHome(QDialog* window)
{
    labelRoute = picture(window, "labelRoute", QRect(kCentre - 160, 60, 320, 72), QString());
    showRoute(false);

    const auto rateRow = [window](int y, const char* pic, const char* icon, const char* speed,
                                  const QString& title, const char* unit, QLabel*& picLabel,
                                  QLabel*& speedLabel, QLabel*& unitLabel) {
        picLabel = picture(window, pic, QRect(287, y, 16, 16), QLatin1String(icon));
        speedLabel = label(window, speed, QRect(307, y - 2, 48, 20), QStringLiteral("--"), "value");
        speedLabel->setAccessibleDescription(title); // its name is the value
        speedLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        unitLabel =
            label(window, unit, QRect(359, y - 2, 36, 20), QStringLiteral("Kbps"), "secondary");
    };
    rateRow(148, "labelUpPic", "up.png", "labelUpSpeed", tr("Send rate"), "labelUpKps", labelUpPic,
            labelUpSpeed, labelUpKps);
    rateRow(172, "labelDownPic", "down.png", "labelDownSpeed", tr("Receive rate"), "labelDownKps",
            labelDownPic, labelDownSpeed, labelDownKps);

    m_Chronometer = new widgeChronometer(window);
    btnConnect =
        button(window, "btnConnect", QRect(kCentre - 90, 248, 180, 40), tr("Connect"), "primary");
    btnConnect->setDefault(true);
    btnConnect->setCursor(Qt::PointingHandCursor);

    labelQuantumPic =
        picture(window, "labelQuantumPic", QRect(246, 312, 20, 20), QStringLiteral("quantum.png"));
    labelQuantumText =
        label(window, "labelQuantumText", QRect(270, 312, 220, 20), QString(), "secondary");
    m_mobileDetectLabel = named(new QLabel(window), "m_mobileDetectLabel");
    m_mobileDetectLabel->setAlignment(Qt::AlignCenter);
    placeChronometer(false);
}

void DlgMainUi::buildPages(QDialog* window)
{
    labelSettingTitle = pageTitle(window, "labelSettingTitle", tr("Setting"));
    m_SettingWidge = new WidgetSetting(window);
    m_ScrollArea = named(new QScrollArea(window), "m_ScrollArea");
    m_ScrollArea->setGeometry(kPage);
    m_ScrollArea->setWidgetResizable(true);
    m_ScrollArea->setFrameShape(QFrame::NoFrame);
    m_ScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_ScrollArea->setWidget(m_SettingWidge);
    QObject::connect(
        m_SettingWidge, &WidgetSetting::sectionOpened, m_ScrollArea,
        [area = m_ScrollArea](QWidget* section) { area->ensureWidgetVisible(section, 0, 0); });

    labelLogTitle = pageTitle(window, "labelLogTitle", tr("Log"));
    btnViewAll = button(window, "btnViewAll", QRect(476, 56, 100, 24), tr("View All"), "link");
    logView = named(new LogView(window), "logView");
    logView->setGeometry(kPage);
    logView->setAccessibleName(tr("Log"));
    logView->setItemDelegate(new CustomDelegate);

    labelAboutTitle = pageTitle(window, "labelAboutTitle", tr("About"));
    m_AboutWidge = new WidgeAbout(window);
    m_AboutWidge->setGeometry(kPage);

    labelQuitTitle = pageTitle(window, "labelQuitTitle", tr("Quit"));
    btnSwitchAccount = button(window, "btnSwitchAccount", QRect(kCentre - 90, 152, 180, 40),
                              tr("Switch Account"), "secondary");
    btnQuitApp = button(window, "btnQuitApp", QRect(kCentre - 90, 208, 180, 40),
                        tr("Quit Application"), "primary");
}

void DlgMainUi::setTabOrder()
{
    const QVector<QWidget*> order = {toolBtnHome, toolBtnSetting, toolBtnLog, toolBtnQuit,
                                     btnConnect,  btnViewAll,     logView,    btnSwitchAccount,
                                     btnQuitApp,  btnAbout,       btnMin,     btnClose};
    for (int i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order.at(i - 1), order.at(i));
}

void DlgMainUi::placeChronometer(bool intranet)
{
    const QPoint place = intranet ? QPoint(m_mobileDetectLabel->x(),
                                           m_mobileDetectLabel->geometry().bottom() + 1 + 5)
                                  : QPoint(labelDownPic->x(), labelDownPic->y() + 20);
    m_Chronometer->setGeometry(QRect(place, widgeChronometer::kPlace));
}

void DlgMainUi::showRoute(bool connected)
{
    const QString name = QLatin1String(connected ? "route_on.png" : "route_off.png");
    labelRoute->setPixmap(pictureIcon(name).pixmap(labelRoute->size()));
}
