#include "widgets/OtpBaseDlg.h"

#include "app/GreyMaskForUkui.h"
#include "widgets/DialogFrame.h"
#include "widgets/FramelessDrag.h"
#include "widgets/Style.h"

#include <QEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kCloseSize = 16;
constexpr int kCloseEdge = 12;

} // namespace

OtpBaseDlg::OtpBaseDlg(QWidget* parent)
    : QDialog(parent), m_contentWidget(new QWidget(this)), m_closeBtn(new QPushButton(this))
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setModal(true);
    setStyleSheet(styleSheetFor("dialogs"));
    GreyMaskForUkui::cover(parent, this);

    m_contentWidget->setObjectName(QStringLiteral("contentWidget"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->addWidget(m_contentWidget);

    m_closeBtn->setObjectName(QStringLiteral("btnClose"));
    m_closeBtn->setAccessibleName(tr("Close"));
    m_closeBtn->setCursor(Qt::PointingHandCursor);
    m_closeBtn->setAutoDefault(false);
    m_closeBtn->setFixedSize(kCloseSize, kCloseSize);
    m_closeBtn->setIconSize({kCloseSize, kCloseSize});
    m_closeBtn->setIcon(pictureIcon(QStringLiteral("close.png")));
    m_closeBtn->installEventFilter(this);
    connect(m_closeBtn, &QPushButton::clicked, this, [this] { onCloseBtnClicked(); });
}

void OtpBaseDlg::mousePressEvent(QMouseEvent* event)
{
    m_dragging = m_isMoveable && beginDrag(m_dragPos, event, this);
}

void OtpBaseDlg::mouseReleaseEvent(QMouseEvent* event)
{
    m_dragging = false;
    QDialog::mouseReleaseEvent(event);
}

void OtpBaseDlg::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        continueDrag(m_dragPos, event, this);
}

void OtpBaseDlg::paintEvent(QPaintEvent*)
{
    paintCard(this);
}

// The close button lights up under the pointer and while it has the focus.
bool OtpBaseDlg::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_closeBtn) {
        switch (event->type()) {
        case QEvent::Enter:
        case QEvent::FocusIn:
            m_closeBtn->setIcon(pictureIcon(QStringLiteral("close_on.png")));
            break;
        case QEvent::Leave:
        case QEvent::FocusOut:
            m_closeBtn->setIcon(pictureIcon(QStringLiteral("close.png")));
            break;
        default:
            break;
        }
    }
    return QDialog::eventFilter(object, event);
}

void OtpBaseDlg::onCloseBtnClicked()
{
    reject();
}

void OtpBaseDlg::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    centerOver(this, parentWidget());
}

void OtpBaseDlg::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    m_closeBtn->move(width() - kCloseEdge - kCloseSize, kCloseEdge);
    m_closeBtn->raise();
    cutToCard(this);
}
