#include "main/widgeChronometer.h"

#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>

widgeChronometer::widgeChronometer(QWidget* parent)
    : QWidget(parent),
      m_Timer(makeTimer(this, "m_Timer", 1000, &widgeChronometer::onChangeTimeTick)),
      labelClock(makePicture(this, "labelClock", QStringLiteral("time.png"), QSize(16, 16))),
      labelTime(makeLabel(this, "labelTime", "text"))
{
    setObjectName(QStringLiteral("m_Chronometer"));
    labelTime->setAccessibleDescription(tr("Connected time")); // its name is the time
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(labelClock);
    row->addWidget(labelTime, 1);
    hide();
}

void widgeChronometer::start()
{
    showTime(0);
    m_TimeRecord = platform().now();
    m_Second = m_TimeRecord.toSecsSinceEpoch();
    show();
    m_Timer->start();
}

void widgeChronometer::stop()
{
    hide();
    m_Timer->stop();
}

QString widgeChronometer::timeText(qint64 seconds)
{
    const auto two = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const qint64 days = seconds / 86400;
    const QString hour = two(seconds % 86400 / 3600);
    const QString min = two(seconds % 3600 / 60);
    const QString sec = two(seconds % 60);
    if (days == 1)
        return tr("1 day %1:%2:%3").arg(hour, min, sec);
    if (days > 1)
        return tr("%1 days %2:%3:%4").arg(two(days), hour, min, sec);
    return QStringLiteral("%1:%2:%3").arg(hour, min, sec);
}

void widgeChronometer::onChangeTimeTick()
{
    // A clock that is set back does not show a negative time.
    showTime(qMax<qint64>(0, platform().now().toSecsSinceEpoch() - m_Second));
}

void widgeChronometer::showTime(qint64 seconds)
{
    labelTime->setText(timeText(seconds));
    resize(qMax(kPlace.width(), sizeHint().width()), kPlace.height());
}
