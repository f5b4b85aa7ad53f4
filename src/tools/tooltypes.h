// Tool types: the seven basic types built into the program and the operator's own
// (custom) types, kept in the settings store as "ToolTypes" and "ToolType01".."ToolTypeNN".
// The dialogs reload the custom types on each visit; nothing else keeps them.
#pragma once

#include "core/vb.h"

#include <QString>
#include <QStringList>

#include <cstdint>

// The basic types, in the order the lists show them. Literals, stored nowhere.
const QStringList &gstrToolTypeStandard();

extern vb::Table<QString> gstrToolTypes;   // the custom types, from 1
extern int16_t gintToolTypeCount;          // their number

// Fills the custom types from the store ("ToolTypes", then each "ToolType"nn).
void ToolTypeUserLoad();
// Writes the count and every custom type. Values above a fallen count stay, unread.
void ToolTypeUserSave();
// The value name of custom type n ("ToolType01"; n = 100 gives "ToolType100").
QString strToolTypeValueName(int n);
