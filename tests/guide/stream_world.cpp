#include "guide/stream_world.h"

#include "core/filenum.h"
#include "core/frm_main.h"
#include "guide/frm_mill.h"
#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/evaluate.h"
#include "nc/linestep.h"
#include "nc/reader.h"
#include "nc/stepcode.h"
#include "platform/forms.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QPushButton>

#include <gtest/gtest.h>

const QByteArray kTwoToolProgram =
    "%\r\n* Two tools\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X2 Y1 Z1\r\nN40 G1 Z-0.5 F100\r\nN50 G1 X4 F200\r\n"
    "N60 G1 Y2.5\r\nN70 G0 Z1\r\nN80 T2\r\nN90 S2000\r\nN100 G0 X1 Y1\r\nN110 G1 Z-0.2 F100\r\n"
    "N120 G1 X3 Y2 F150\r\nN130 G0 Z2\r\n";

StreamWorld::StreamWorld()
{
    ResetStreamState();
    ResetStreamHooks();
    ResetStepState();
    SetPumpHook([this] {
        clock.advanceMs(1);
        maxOut = std::max<int>(maxOut, gintBuffersOut);
        if (onPump)
            onPump();
        if (!watchDoor || !emu)
            return;
        const ControllerEmulator &c = emu->controller();
        if (c.doorOpen() && m_stepsAtOpen < 0) {
            ++doorOpenings;
            m_stepsAtOpen = c.stepRecords();
        } else if (!c.doorOpen()) {
            m_stepsAtOpen = -1;
        }
        if (m_stepsAtOpen >= 0)
            stepsWhileDoorOpen = std::max(stepsWhileDoorOpen, c.stepRecords() - m_stepsAtOpen);
    });
    uiHooks().messageBox = [this](const QString &text, int32_t flags, const QString &title) -> int16_t {
        BoxSeen b{text, flags, title, emu ? static_cast<int64_t>(emu->written().size()) : 0};
        seen.push_back(b);
        if (const int16_t answer = onBox ? onBox(b) : 0)
            return answer;
        switch (flags & 0x0F) {
        case 2: return 3;
        case 3: case 4: return 6;
        case 5: return 4;
        default: return 1;
        }
    };
    StreamHooks &h = streamHooks();
    h.millPrompt = [this](const QString &tag) {
        promptTags << tag;
        return ShowMillPrompt(tag);
    };
    h.backToWizard = [this] { ++backToWizard; };
    h.backToMenu = [this] { ++backToMenu; };
    h.showMethod = [this] { ++showMethod; };
    m_watch.setInterval(0);
    QObject::connect(&m_watch, &QTimer::timeout, [this] { watchPrompt(); });
    m_watch.start();
}

StreamWorld::~StreamWorld()
{
    m_watch.stop();
    FileCloseAll();
    if (!gstrWorkFile.isEmpty())
        QFile::remove(gstrWorkFile);
    ResetStreamHooks();
    ResetStreamState();
}

void StreamWorld::watchPrompt()
{
    if (!frmMillLoaded())
        return;
    FrmMill *f = frmMill();
    if (!f->isVisible() || f->intStepsShown == m_lastShown)
        return;
    m_lastShown = f->intStepsShown;
    promptSteps.push_back(f->intStep);
    const int button = onPrompt ? onPrompt(f->intStep) : 1;
    if (button >= 0)
        f->cmdNav[static_cast<size_t>(button)]->click();
}

void StreamWorld::setUp(int16_t backlash)
{
    RegistryValuePut(QStringLiteral("RapidSpeed"), QStringLiteral("500"));
    RegistryValuePut(QStringLiteral("KeepFiles"), QStringLiteral("Yes"));
    RegistryValuePut(QStringLiteral("ShowTime"), QStringLiteral("Yes"));
    for (const char *axis : {"BacklashX", "BacklashY", "BacklashZ"})
        RegistryValuePut(QString::fromLatin1(axis), QString::number(backlash));
    ReadStartSettings();
    gtypTools.Erase();
    gintToolCount = 2;
    gtypTools.Redim(2);
    gtypTools(1) = ToolData{1, QStringLiteral("End mill"), 6.0f, 0.0f, false};
    gtypTools(2) = ToolData{2, QStringLiteral("Ball end"), 3.0f, 0.0f, false};
}

bool StreamWorld::compile(const QByteArray &text)
{
    const QString path = writeFile(QStringLiteral("part.brx"), text);
    gblnCancel = false;
    gblnAnalysedToTemp = false;
    gfnCompFileReason = &strCompFileReason;
    QString refused;
    uiHooks().correctFile = [&refused](const QString &, const QString &errorText, const QString &) {
        refused = errorText;
        return QStringLiteral("Cancel");
    };
    ReadCommands(path);
    if (gintReadResult != 0) {
        ADD_FAILURE() << "the reader refused the program: " << refused.toStdString();
        return false;
    }
    if (!gblnAnalysedValid)
        EvaluateCommands();
    return QFile::exists(gstrAnalysedFile);
}

void StreamWorld::startOnline(int16_t backlash)
{
    setUp(backlash);
    ASSERT_TRUE(compile(kTwoToolProgram));
    goOnline();
    ASSERT_NE(emu, nullptr);
    gintCurrentTool = gintNextTool = 0;
    gblnToolInserted = gblnToolInMachine = false;
}

void StreamWorld::postEsc()
{
    QCoreApplication::postEvent(frmMain(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
}

void StreamWorld::run()
{
    gblnCancel = false;
    StartMilling();
    tmrStartMilling_Timer();
}

void UnloadForms()
{
    QList<QWidget *> forms = Forms();
    for (auto it = forms.rbegin(); it != forms.rend(); ++it)
        Unload(*it);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
