// One copy at a time: the second copy asks the first to come forward, or says why it stops.
#include "core/f1mill.h"
#include "core/msgbox.h"
#include "platform/instance_guard.h"
#include "support/test_support.h"

#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// Checked at the start: the first copy goes on, a second asks it to come forward and ends
// silently, one that can't reach it (the lock held, but nobody listens) ends with the refusal.
TEST(InstanceGuard, EveryCopyButTheFirstEnds)
{
    QTemporaryDir dir, unheard;
    InstanceGuard first(dir.path()), second(dir.path()), third(unheard.path());
    int raised = 0;
    first.onRaise = [&] { ++raised; };
    QLockFile held(unheard.path() + QStringLiteral("/Brantok.lock"));
    ASSERT_TRUE(held.tryLock(0));
    ScriptedBoxes boxes;
    int ended = -1;
    uiHooks().endProcess = [&](int code) { ended = code; };
    CheckPrevInstance(first);
    EXPECT_EQ(ended, -1);
    CheckPrevInstance(second);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(raised, 1);
    EXPECT_TRUE(boxes.shown().empty());
    ended = -1;
    CheckPrevInstance(third);
    EXPECT_EQ(ended, 0);
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_EQ(boxes.last().text, QStringLiteral("unwanted instance cannot start as a previous instance is still running"));
    EXPECT_EQ(boxes.last().flags, vbCritical);
    first.release();   // once the first has gone, a new copy is the first
    EXPECT_TRUE(second.acquire());
}

} // namespace
