#include "login/OtpInstructionDlg.h"

#include "widgets/WidgetParts.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

OtpInstructionDlg::OtpInstructionDlg(QWidget* parent) : OtpBaseDlg(parent)
{
    setObjectName(QStringLiteral("OtpInstructionDlg"));
    setWindowTitle(tr("Binding Instructions"));
    QLabel* text = makeLabel(
        contentWidget(), "labelText", "",
        tr("1. Open the authenticator.\n2. Click the plus sign.\n3. Choose a way to bind the "
           "authenticator.\n4. Scan the QR code, or fill in the username and the key.\n5. "
           "Complete binding, then you can see the 6-digit number as one time password, which "
           "will be used later verification process."));
    text->setWordWrap(true);
    text->setFixedWidth(336);
    setAccessibleDescription(text->text());

    layout()->setSizeConstraint(QLayout::SetFixedSize); // on a small screen too
    auto* column = new QVBoxLayout(contentWidget());
    column->setContentsMargins(0, 0, 0, 4);
    column->setSpacing(12);
    column->addWidget(makeLabel(contentWidget(), "labelTitle", "title", windowTitle()));
    column->addWidget(text);
    m_closeBtn->setDefault(true); // Return closes it too
    m_closeBtn->setFocus();
}
