#pragma once

#include "widgets/CommonTipsDialog.h"

/// Tells how a request to associate this device with the account stands. Confirm accepts, the
/// close button rejects. GUI thread.
class DlgBindResult : public CommonTipsDialog
{
    Q_OBJECT

public:
    /// The values are fixed.
    enum BIND_RESULT {
        APPLY_SUCCESS = 0,  ///< the request has been received
        APPLY_FAILED = 1,   ///< it could not be sent
        APPLY_PROCESS = 2,  ///< it waits for an administrator
        DEVICE_DISABLED = 3 ///< the device may no longer be used
    };

    DlgBindResult(QWidget* parent, BIND_RESULT type);

    static QString textOf(BIND_RESULT type);
};
