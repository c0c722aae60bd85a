#include "widgets/FoldableWidget.h"

#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kTitleHeight = 36;
constexpr int kFrame = 4; ///< what the section adds to its title and its content
constexpr int kRadius = 4;
constexpr QColor kGround(0xf1, 0xf7, 0xfc);
constexpr QColor kBorder(0xd4, 0xdf, 0xeb);

class TitleButton : public QPushButton
{
public:
    explicit TitleButton(FoldableWidget* section) : QPushButton(section), m_section(section) {}

    bool isFold() const { return m_section->isFold(); }

private:
    FoldableWidget* m_section;
};

// A push button for assistive technology, with the state that it steers.
class AccessibleTitle : public QAccessibleWidget
{
public:
    explicit AccessibleTitle(TitleButton* button)
        : QAccessibleWidget(button, QAccessible::Button), m_button(button)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = !m_button->isFold();
        state.collapsed = m_button->isFold();
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_button->text() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction())
            m_button->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    TitleButton* m_button;
};

QAccessibleInterface* describeTitle(const QString&, QObject* object)
{
    auto* title = dynamic_cast<TitleButton*>(object);
    return title ? new AccessibleTitle(title) : nullptr;
}

} // namespace

FoldableWidget::FoldableWidget(const QString& title, QWidget* parent)
    : QWidget(parent), m_topBtn(new TitleButton(this)), m_bottomWidget(new QWidget(this)),
      m_splitterLine(makeLabel(this, "m_splitterLine", "splitter"))
{
    static const bool described = [] {
        QAccessible::installFactory(describeTitle);
        return true;
    }();
    Q_UNUSED(described)
    m_topBtn->setText(title); // not before assistive technology can be told what this button is
    named(m_topBtn, "topBtn");
    setRole(m_topBtn, "fold");
    m_topBtn->setFixedHeight(kTitleHeight);
    m_topBtn->setAutoDefault(false);
    m_topBtn->setIcon(pictureIcon(QStringLiteral("btndown.ico")));
    m_splitterLine->setFixedHeight(1);
    connect(m_topBtn, &QPushButton::clicked, this, &FoldableWidget::onHandleFold);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(m_topBtn);
    column->addWidget(m_splitterLine);
    column->addWidget(m_bottomWidget, 1);
}

void FoldableWidget::onHandleFold()
{
    m_bottomWidget->setVisible(m_isFold);
    m_splitterLine->setVisible(m_isFold);
    m_topBtn->setIcon(
        pictureIcon(m_isFold ? QStringLiteral("btndown.ico") : QStringLiteral("btnup.ico")));
    setFixedHeight(m_topBtn->height() + kFrame +
                   (m_isFold ? m_bottomWidget->sizeHint().height() : 0));
    m_isFold = !m_isFold;

    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(m_topBtn, changed);
    QAccessible::updateAccessibility(&event);
}

void FoldableWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(kBorder);
    painter.setBrush(kGround);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}
