// The forms collection: load on first use, collection order, unload and reload.
#include "platform/forms.h"

#include <QDialog>
#include <QTimer>
#include <QApplication>

#include <gtest/gtest.h>

namespace {

int gLoads = 0;
bool gCancelUnload = false;

class FrmProbe : public QDialog, public Form {
public:
    void Form_Load() override
    {
        ++gLoads;
        seenInCollection = IsLoaded(this);
    }
    bool Form_QueryUnload(int mode) override
    {
        lastMode = mode;
        return gCancelUnload;
    }
    bool seenInCollection = false;
    int lastMode = -1;
};

FrmProbe *g_probe = nullptr;
FrmProbe *frmProbe() { return FormInstance(g_probe); }

void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

TEST(Forms, LoadedOnFirstUseOnceInTheCollectionDuringLoadUntilUnloaded)
{
    gLoads = 0;
    FrmProbe *a = frmProbe();
    EXPECT_EQ(frmProbe(), a);
    EXPECT_EQ(gLoads, 1);
    EXPECT_TRUE(a->seenInCollection);
    EXPECT_EQ(FormIndex(a), Forms().size() - 1);
    gCancelUnload = true;   // a cancelled unload keeps the form
    EXPECT_FALSE(Unload(a));
    EXPECT_TRUE(IsLoaded(a));
    gCancelUnload = false;
    EXPECT_TRUE(Unload(a));
    EXPECT_EQ(a->lastMode, vbFormCode);
    EXPECT_FALSE(IsLoaded(a));
    settle();
    FrmProbe *b = frmProbe();   // a fresh instance after the unload
    EXPECT_EQ(gLoads, 2);
    QTimer::singleShot(0, [b] { Unload(b); });   // an unload ends a modal show
    ShowModal(b);
    EXPECT_FALSE(IsLoaded(b));
    settle();
}

} // namespace
