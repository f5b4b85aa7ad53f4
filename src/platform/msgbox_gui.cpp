#include "platform/msgbox_gui.h"

#include "core/logger.h"
#include "core/msgbox.h"
#include "core/vb.h"
#include "platform/forms.h"
#include "platform/keystate.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QWindow>

#include <vector>

namespace {

QString gstrLastList;

MsgBoxPlatform defaults()
{
    MsgBoxPlatform p;
    p.showBox = intPlatformMsgBox;
    p.keyDown = KeyIsDown;
    p.pump = [] {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QThread::msleep(1);   // a held key must not eat a whole core
    };
    return p;
}

MsgBoxPlatform &platform()
{
    static MsgBoxPlatform p = defaults();
    return p;
}

struct Button {
    QMessageBox::StandardButton qt;
    int16_t result;
};

// The platform's button sets, in their order on the box.
std::vector<Button> buttonsOf(int32_t flags)
{
    using B = QMessageBox;
    switch (flags & 0x0F) {
    case vbOKCancel: return {{B::Ok, vbOK}, {B::Cancel, vbCancel}};
    case vbAbortRetryIgnore: return {{B::Abort, vbAbort}, {B::Retry, vbRetry}, {B::Ignore, vbIgnore}};
    case vbYesNoCancel: return {{B::Yes, vbYes}, {B::No, vbNo}, {B::Cancel, vbCancel}};
    case vbYesNo: return {{B::Yes, vbYes}, {B::No, vbNo}};
    case vbRetryCancel: return {{B::Retry, vbRetry}, {B::Cancel, vbCancel}};
    default: return {{B::Ok, vbOK}};
    }
}

QMessageBox::Icon iconOf(int32_t flags)
{
    switch (flags & 0xF0) {
    case vbCritical: return QMessageBox::Critical;
    case vbQuestion: return QMessageBox::Question;
    case vbExclamation: return QMessageBox::Warning;
    case vbInformation: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

} // namespace

MsgBoxPlatform &msgBoxPlatform() { return platform(); }
void ResetMsgBoxPlatform() { platform() = defaults(); }
QString LastDisabledFormList() { return gstrLastList; }

int16_t intPlatformMsgBox(QWidget *owner, const QString &strMessage, int32_t intFlags, const QString &strTitle)
{
    // No parent: a child of a disabled window would be disabled with it. The owner is the
    // transient parent instead, so the window system keeps the box above it.
    QMessageBox box;
    box.setWindowTitle(strTitle);
    box.setText(QString(strMessage).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    box.setTextFormat(Qt::PlainText);
    box.setIcon(iconOf(intFlags));
    std::vector<Button> buttons = buttonsOf(intFlags);
    std::vector<QAbstractButton *> made;
    for (const Button &b : buttons) {
        QPushButton *pb = box.addButton(b.qt);
        made.push_back(pb);
    }
    size_t def = (intFlags & vbDefaultButton3) ? 2 : (intFlags & vbDefaultButton2) ? 1 : 0;
    if (def >= made.size())
        def = 0;
    box.setDefaultButton(static_cast<QPushButton *>(made[def]));
    // Esc answers Cancel where there is one, OK on a box with OK alone, and nothing else.
    for (size_t i = 0; i < buttons.size(); ++i)
        if (buttons[i].result == vbCancel || buttons.size() == 1)
            box.setEscapeButton(made[i]);
    box.winId();
    if (owner && owner->windowHandle() && box.windowHandle())
        box.windowHandle()->setTransientParent(owner->windowHandle());
    box.setWindowModality(Qt::ApplicationModal);
    box.show();
    box.raise();
    box.activateWindow();
    box.exec();
    QAbstractButton *clicked = box.clickedButton();
    for (size_t i = 0; i < made.size(); ++i)
        if (made[i] == clicked)
            return buttons[i].result;
    // Closed without a button (the close box on a box with an escape button).
    QAbstractButton *esc = box.escapeButton();
    for (size_t i = 0; i < made.size(); ++i)
        if (made[i] == esc)
            return buttons[i].result;
    return 0;
}

int16_t GuiMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle)
{
    // 1. An arrow, whatever the pointer was.
    const bool gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
    if (gui)
        QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    QString title = strTitle.isEmpty() ? AppTitle() : strTitle;

    // 2. The owner: the first form, in collection order, that is visible and enabled.
    const QList<QWidget *> forms = Forms();
    QWidget *owner = nullptr;
    for (QWidget *f : forms)
        if (f->isVisible() && f->isEnabled()) {
            owner = f;
            break;
        }

    // 3. Disable every enabled form and remember it, by its index as "000".
    QString strList;
    std::vector<QPointer<QWidget>> disabled;
    for (int i = 0; i < forms.size(); ++i) {
        if (forms[i]->isEnabled()) {
            forms[i]->setEnabled(false);
            strList += vb::Format000i(i);
            disabled.emplace_back(forms[i]);
        }
    }
    gstrLastList = strList;

    // 4. The box, in front.
    int16_t result = platform().showBox(owner, strMessage, intFlags, title);

    // 5. The key that closed the box must be up before anything below can see it.
    while (platform().keyDown(13) || platform().keyDown(32))
        platform().pump();

    // 6. Enable the remembered forms again, three characters at a time. A form that was
    //    unloaded behind the box is skipped: the list names forms, not places.
    for (size_t n = 0; n * 3 < static_cast<size_t>(strList.size()); ++n) {
        if (n < disabled.size() && disabled[n])
            disabled[n]->setEnabled(true);
    }
    if (gui)
        QGuiApplication::restoreOverrideCursor();
    return result;
}
