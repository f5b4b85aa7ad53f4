#include "guide/wizard_world.h"

#include "core/frm_splash.h"
#include "files/filechoice.h"
#include "guide/frm_mill.h"
#include "guide/setmill.h"
#include "link/keyboard_panel.h"
#include "link/keycontrol.h"
#include "link/machining_screen.h"
#include "link/stream.h"

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

WizardWorld::WizardWorld()
{
    ResetKeyControl();
    ResetSetMill();
    f = frmMain();
    f->tmrShowMenu->stop();
    // The screens a run goes back to are the real ones; the prompts stay recorded.
    InstallMachiningUi();
    streamHooks().millPrompt = [this](const QString &tag) {
        promptTags << tag;
        return ShowMillPrompt(tag);
    };
    SetFileDialogScript([this](const QString &title, const QString &) {
        dialogTitles << title;
        return chosenFile;
    });
}

WizardWorld::~WizardWorld()
{
    onPump = nullptr;
    SetFileDialogScript({});
    frmSplash()->tmrKeyControl->stop();
    ResetKeyControl();
    UnloadForms();
}

void WizardWorld::toMill(const QByteArray &program)
{
    if (!program.isEmpty())
        chosenFile = writeFile(QStringLiteral("part.brx"), program);
    SetMode(1);
    f->MenuAction(QStringLiteral("Mill"));
}

void WizardWorld::nav(int i) { f->picSetMill->cmdSetNav[static_cast<size_t>(i)]->click(); }

void WizardWorld::task(std::initializer_list<int> held, int ms, bool esc, const std::function<bool(int n)> &each)
{
    frmSplash()->tmrKeyControl->stop();
    const std::vector<int> down(held);
    int n = 0;
    onPump = [&, this] {
        ++n;
        if (n == 5)
            for (int vk : down)
                keys.Press(vk);
        if (n == 5 + ms)
            keys.ReleaseAll();
        const bool over = each ? each(n) : n > 5 + ms;
        if (over && gintBuffersOut == 0 && gblnKeyLoop) {
            if (esc)
                f->Form_KeyDown(27, 0);
            else
                f->picKeyboard->cmdDone->click();
        }
        if (n > 2000000)   // a loop that never ends: get out and let the test fail
            gblnKeyLoop = false;
    };
    frmSplash()->tmrKeyControl_Timer();
    onPump = nullptr;
}

void WizardWorld::runStarted()
{
    f->tmrStartMilling->stop();
    tmrStartMilling_Timer();
}

QString WizardWorld::title() const
{
    return gintSetStep == 1 ? f->picSetMill->lblSetTools->text() : f->picSetMill->lblStepTitle->text();
}

QString WizardWorld::page() const
{
    return gintSetStep == 1 ? f->picSetMill->rtbSetTools->toPlainText() : f->picSetMill->rtbStep->toPlainText();
}
