#include "login/DlgBindResult.h"

DlgBindResult::DlgBindResult(QWidget* parent, BIND_RESULT type) : CommonTipsDialog(parent)
{
    setObjectName(QStringLiteral("DlgBindResult"));
    setContentText(textOf(type));
}

QString DlgBindResult::textOf(BIND_RESULT type)
{
    switch (type) {
    case APPLY_SUCCESS:
        return tr("Your device association request has been received. Please be patient as we "
                  "process your request. Thank you.");
    case APPLY_FAILED:
        return tr("Failed to send the device association request. Please try again.");
    case APPLY_PROCESS:
        return tr("We are currently processing your request to associate your device. Please wait "
                  "patiently. Thank you for your understanding.");
    case DEVICE_DISABLED:
        return tr("Your device is no longer permitted to access Veltaro");
    }
    return {};
}
