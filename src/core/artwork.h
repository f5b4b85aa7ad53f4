// The program's own pictures, drawn with QPainter so they stay sharp at any scale and
// need no binary files: the busy book, the main menu's heading and mill, the spindle
// image list and the toolbar icons.
#pragma once

#include <QIcon>
#include <QPixmap>

// imgBook(0..11): a book turning one page over twelve frames. 48 x 38 pixels.
QPixmap BookFrame(int intFrame);
// imgHead: the program's name over the main menu.
QPixmap HeadArt(int width, int height);
// imgMill: a bench milling machine with its spindle, table and billet.
QPixmap MillArt(int width, int height);
// ilsSpindle(1..4): 1 start (ready), 2 start (greyed, spindle running),
// 3 stop (ready, spindle running), 4 stop (greyed). 48 x 48 pixels.
QPixmap SpindleImage(int intIndex);
// Toolbar pictures by the button's key: "Back", "Settings", "Edit".
QIcon ToolbarIcon(const QString &strKey);
// The window icon.
QIcon AppIcon();
