#include "core/hooks.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

bool gblnUnderTest = false;

namespace {

// The first button of a box's button set: what a console answers when nobody can click.
int16_t firstButton(int32_t flags)
{
    switch (flags & 0x0F) {
    case 0: return 1;  // OK
    case 1: return 1;  // OK, Cancel
    case 2: return 3;  // Abort, Retry, Ignore
    case 3: return 6;  // Yes, No, Cancel
    case 4: return 6;  // Yes, No
    case 5: return 4;  // Retry, Cancel
    default: return 1;
    }
}

UiHooks consoleHooks()
{
    UiHooks h;
    h.messageBox = [](const QString &text, int32_t flags, const QString &title) -> int16_t {
        QString shown = QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        std::fprintf(stderr, "[%s]\n%s\n", title.toLocal8Bit().constData(), shown.toLocal8Bit().constData());
        return firstButton(flags);
    };
    h.pageTurnStart = [](const QString &) {};
    h.pageTurnStop = [] {};
    h.correctFile = [](const QString &, const QString &, const QString &) { return QStringLiteral("Cancel"); };
    h.progress = [](int16_t) {};
    h.endProcess = [](int code) {
        if (gblnUnderTest) {
            std::fprintf(stderr, "The process was ended (code %d) inside a test.\n", code);
            code = 99;
        }
        std::fflush(nullptr);
        std::_Exit(code);
    };
    return h;
}

UiHooks &instance()
{
    static UiHooks hooks = consoleHooks();
    return hooks;
}

} // namespace

UiHooks &uiHooks() { return instance(); }

void ResetUiHooks() { instance() = consoleHooks(); }

namespace {
std::function<void()> &pumpHook()
{
    static std::function<void()> hook;
    return hook;
}
} // namespace

void SetPumpHook(std::function<void()> hook) { pumpHook() = std::move(hook); }

void DoEvents()
{
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();
    if (pumpHook()) {
        auto hook = pumpHook();   // the hook may replace itself while it runs
        hook();
    }
}
