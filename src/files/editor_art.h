// The code editor's toolbar pictures, by the button's key: "New", "Open", "Save", "Cut",
// "Copy", "Paste", "Find", "Check". Drawn at run time, 24 x 24 pixels.
#pragma once

#include <QIcon>
#include <QString>

QIcon EditorToolbarIcon(const QString &strKey);
