// A clean start for every test that drives the main window: its own store, scripted boxes,
// no form loaded, the shared state as before any start.
#pragma once

#include "core/f1mill.h"
#include "core/frm_main.h"
#include "core/hooks.h"
#include "core/state.h"
#include "core/store.h"
#include "platform/forms.h"
#include "support/test_support.h"
#include "tools/tooltable.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>

inline void UnloadEveryForm()
{
    QList<QWidget *> forms = Forms();
    for (auto it = forms.rbegin(); it != forms.rend(); ++it)
        Unload(*it);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A value of the store in force, "absent" when it has none.
inline QString StoredText(const char *name, const char *absent = "absent")
{
    return strRegistryValueGet(QString::fromLatin1(name), QString::fromLatin1(absent));
}

class UiTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        store = std::make_unique<TempStore>();
        boxes = std::make_unique<ScriptedBoxes>();
        ResetSharedState();
        ReadStartSettings();   // the defaults, as Main leaves them
        ResetShutdown();
        gtypTools.Erase();
        gintToolCount = 0;
    }
    void TearDown() override
    {
        UnloadEveryForm();
        boxes.reset();
        ResetUiHooks();
        store.reset();
    }
    void addTool(int16_t number)
    {
        gintToolCount = static_cast<int16_t>(gintToolCount + 1);
        gtypTools.Redim(gintToolCount);
        gtypTools(gintToolCount).intNumber = number;
        gtypTools(gintToolCount).strType = QStringLiteral("End mill");
        gtypTools(gintToolCount).sngDiameter = 6.0f;
    }
    std::unique_ptr<TempStore> store;
    std::unique_ptr<ScriptedBoxes> boxes;
};
