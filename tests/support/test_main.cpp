// The main of every test program: a Qt application so that timers and the event loop
// work. Programs that drive forms get a widget application, offscreen unless told otherwise.
#include <QCoreApplication>
#ifdef BRANTOK_TEST_UI
#include <QApplication>
#endif

#include "core/hooks.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    gblnUnderTest = true;
#ifdef BRANTOK_TEST_UI
    QApplication app(argc, argv);
#else
    QCoreApplication app(argc, argv);
#endif
    return RUN_ALL_TESTS();
}
