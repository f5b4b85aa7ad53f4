// The only way the program shows a message box.
// Flags are the platform's message-box flag word: the button set (0 OK, 1 OK/Cancel,
// 2 Abort/Retry/Ignore, 3 Yes/No/Cancel, 4 Yes/No, 5 Retry/Cancel) plus the icon
// (16 stop, 32 question, 48 exclamation, 64 information) plus the default button (256, 512).
#pragma once

#include <QString>

#include <cstdint>

enum : int16_t { vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6, vbNo = 7 };
enum : int32_t {
    vbOKOnly = 0, vbOKCancel = 1, vbAbortRetryIgnore = 2, vbYesNoCancel = 3, vbYesNo = 4, vbRetryCancel = 5,
    vbCritical = 16, vbQuestion = 32, vbExclamation = 48, vbInformation = 64,
    vbDefaultButton2 = 256, vbDefaultButton3 = 512,
};

// Shows the box and returns the button pressed (0 when the box itself failed).
// An empty title becomes the program's title. While the box is up no form can be used,
// and it returns only after Enter and Space are up again.
int16_t intStdMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle);
void StdMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle);
