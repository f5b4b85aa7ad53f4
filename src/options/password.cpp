#include "options/password.h"

#include "core/logger.h"
#include "core/vb.h"
#include "core/vb_rnd.h"

bool gblnPasswordPassed = false;

int intAnsiCode(QChar c)
{
    const ushort u = c.unicode();
    return u <= 0xFF ? u : '?';
}

QString strEncrypt(const QString &strPlain) try {
    // The generator's fixed start: a negative argument resets it, the number seeds it.
    vb::Rnd(-1.0f);
    vb::Randomize(1.0);
    QString strResult;
    // Only the last of a character's draws counts; it carries over when a character has
    // code 0 and draws nothing (a NUL can't be typed into the boxes).
    int intCode = 0;
    for (QChar c : strPlain) {
        const int a = intAnsiCode(c);
        for (int j = 1; j <= a; ++j)
            intCode = static_cast<int>(vb::Int(vb::Rnd() * 128.0f)) + 32;
        strResult.append(QChar(intCode));
    }
    return strResult;
} catch (...) {
    LogError("frmSettings", "strEncrypt");
}
