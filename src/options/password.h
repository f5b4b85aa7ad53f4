// The settings password: a user-level lock on the settings dialog. The password itself is
// never stored; the store's "Password" holds its scramble (gstrPassword, or "None"), and a
// check scrambles what was typed and compares.
#pragma once

#include <QString>

// The operator has just proved himself on this visit of the settings dialog: the next
// blnValidUser doesn't ask again. One use only; cleared by that call and by Cancel.
extern bool gblnPasswordPassed;

// The scramble: one character out for each character in, codes 32..159. The generator is
// reset to the same point for every call, so the same text always gives the same result;
// each character's draw depends on all the characters before it. One-way in use.
QString strEncrypt(const QString &strPlain);

// A character's code as the scramble reads it: its code in the Latin-1 set, and 63 ("?")
// for a character outside it, as the original's conversion to the ANSI set gave.
int intAnsiCode(QChar c);
