// The settings store: one flat set of named text values that outlives the program.
// Backed by an INI file: $BRANTOK_STORE when set, else ~/.config/Ostrane/Brantok.conf.
// These two procedures are the only way to it. Nothing is cached: each call goes to the file.
#pragma once

#include <QString>

// The stored text of `strValueName`, or `strDefault` when it is missing, unreadable, or longer
// than 79 characters (the store's read limit: such a value reads as absent).
QString strRegistryValueGet(const QString &strValueName, const QString &strDefault);
// Stores the text. A store that can't be written loses the value silently; the file is
// replaced atomically, never left half-written.
void RegistryValuePut(const QString &strValueName, const QString &strValue);

// The path of the store file in force.
QString StorePath();
// A flag is true only for exactly "Yes".
inline bool blnYes(const QString &s) { return s == QStringLiteral("Yes"); }
inline QString YesNo(bool b) { return b ? QStringLiteral("Yes") : QStringLiteral("No"); }
