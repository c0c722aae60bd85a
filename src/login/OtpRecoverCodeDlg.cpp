#include "login/OtpRecoverCodeDlg.h"

#include "widgets/Style.h"
#include "widgets/WidgetParts.h"
#include "widgets/WidgetTopPrompt.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int kTextWidth = 352;
constexpr int kCodesHeight = 132;

QString dotted(const QStringList& codes)
{
    QStringList lines;
    for (const QString& code : codes)
        lines.append(QChar(0xb7) + code);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

OtpRecoverCodeDlg::OtpRecoverCodeDlg(const QStringList& codes, QWidget* parent)
    : OtpBaseDlg(parent), m_codeList(codes),
      m_codeEdit(named(new QTextEdit(contentWidget()), "m_codeEdit")),
      m_topPrompt(new WidgetTopPrompt(parent ? parent : this))
{
    setObjectName(QStringLiteral("OtpRecoverCodeDlg"));
    QLabel* title = makeLabel(contentWidget(), "labelTitle", "title",
                              tr("Please copy your recovery codes and save them properly."));
    title->setWordWrap(true);
    setWindowTitle(title->text());
    QLabel* text = makeLabel(
        contentWidget(), "labelText", "",
        tr("If you lose your phone or have difficulty receiving the one time password, these "
           "recovery codes help regain access to your account and each of them is available for "
           "one time only, otherwise you will have no access to your account."));
    text->setWordWrap(true);
    text->setFixedWidth(kTextWidth);
    setAccessibleDescription(text->text());

    setRole(m_codeEdit, "panel");
    m_codeEdit->setPlainText(dotted(codes));
    m_codeEdit->setReadOnly(true);
    m_codeEdit->setTabChangesFocus(true);
    m_codeEdit->setFixedHeight(kCodesHeight);
    m_codeEdit->setAccessibleName(tr("Recovery codes"));
    m_codeEdit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    QPushButton* copyBtn = makeDialogButton(contentWidget(), "btnCopy", "primary", tr("Copy"));
    copyBtn->setDefault(true);
    connect(copyBtn, &QPushButton::clicked, this, &OtpRecoverCodeDlg::copy);

    layout()->setSizeConstraint(QLayout::SetFixedSize); // on a small screen too
    auto* column = new QVBoxLayout(contentWidget());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addWidget(title);
    column->addWidget(text);
    column->addWidget(m_codeEdit);
    column->addWidget(copyBtn, 0, Qt::AlignHCenter);
    setTabOrder(m_codeEdit, copyBtn);
    setTabOrder(copyBtn, m_closeBtn);
    copyBtn->setFocus();
}

void OtpRecoverCodeDlg::copy()
{
    QGuiApplication::clipboard()->setText(m_codeList.join(QLatin1Char('\n')));
    m_topPrompt->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, tr("Copied to clipboard"), true);
    accept();
}
