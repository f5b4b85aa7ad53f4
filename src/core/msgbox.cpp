#include "core/msgbox.h"

#include "core/hooks.h"
#include "core/logger.h"

// The safety steps around the box (pointer, owner, every form disabled, the wait for Enter
// and Space) belong to the window system and live behind the message-box hook.
int16_t intStdMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle) try {
    QString title = strTitle.isEmpty() ? AppTitle() : strTitle;
    return uiHooks().messageBox(strMessage, intFlags, title);
} catch (...) {
    LogError("F1Mill", "intStdMsgBox");
}

void StdMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle)
{
    intStdMsgBox(strMessage, intFlags, strTitle);
}
