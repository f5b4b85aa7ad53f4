// The recent-files list. It has no table of its own: the list is the menu. Each entry is an
// element of frmMain's mnuMMru, its data the full path as given (case kept), its text
// "&1 path" so the digit is the menu's access key. While the code editor is loaded its menu
// carries a mirror, mnuFMru, entry for entry. The store keeps the list between runs as
// MRUFile00, MRUFile01, ... most recent first.
//
// Called by the start (MRUGetFileList), the stop (MRUSaveFileList), the file choice and the
// editor's save (MRUAddItem), and LaunchFile (MRUReorderList, MRURemoveItem).
#include "files/recent.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "files/filechoice.h"

#include <QAction>
#include <QMenu>
#include <QPointer>

#include <vector>

namespace {

constexpr int16_t kMRUMax = 4;

// The editor's mirror, attached while the editor is loaded.
bool gblnMirrorAttached = false;
QMenu *gmnuEditorFile = nullptr;
QAction *gactEditorBefore = nullptr;
void (*gpfnEditorClick)(int) = nullptr;
std::vector<QPointer<QAction>> gmnuFMru;   // null where the editor's menu has gone first

std::vector<QAction *> &mnuMMru() { return frmMain()->mnuMMru; }

// An element of the main menu's array; one that doesn't exist is fault 9.
QAction *MMru(int i)
{
    if (i < 0 || i >= static_cast<int>(mnuMMru().size()))
        vb::Err(vb::kSubscript);
    return mnuMMru()[static_cast<size_t>(i)];
}

QString Tag(int i) { return MMru(i)->data().toString(); }

// The editor's element i, or null when the mirror has none there.
QAction *FMru(int i)
{
    if (!gblnMirrorAttached || i < 0 || i >= static_cast<int>(gmnuFMru.size()))
        return nullptr;
    return gmnuFMru[static_cast<size_t>(i)].data();
}

void SetTag(int i, const QString &strFile)
{
    MMru(i)->setData(strFile);
    if (QAction *a = FMru(i))
        a->setData(strFile);
}

// "&1 path". An "&" in the path is doubled so that it shows as itself, not as a second key.
QString Caption(int i, const QString &strFile)
{
    return QStringLiteral("&") + QString::number(i + 1) + u' ' + QString(strFile).replace(u'&', QStringLiteral("&&"));
}

void RebuildCaptions()
{
    for (int i = 0; i < gintMRUCount; ++i) {
        const QString strCaption = Caption(i, Tag(i));
        MMru(i)->setText(strCaption);
        if (QAction *a = FMru(i))
            a->setText(strCaption);
    }
}

// A new element of the main menu after the last one, clicked through mnuMMru_Click.
QAction *NewMainElement(int i)
{
    FrmMain *f = frmMain();
    auto *a = new QAction(f);
    a->setObjectName(QStringLiteral("mnuMMru"));
    f->mnuMill->insertAction(f->mnuMsep2, a);
    QObject::connect(a, &QAction::triggered, f, [i] { mnuMMru_Click(i); });
    return a;
}

QAction *NewEditorElement(int i)
{
    auto *a = new QAction(gmnuEditorFile);
    a->setObjectName(QStringLiteral("mnuFMru"));
    gmnuEditorFile->insertAction(gactEditorBefore, a);
    QObject::connect(a, &QAction::triggered, gmnuEditorFile, [i] {
        if (gpfnEditorClick)
            gpfnEditorClick(i);
    });
    return a;
}

void DropAction(QAction *a)
{
    if (!a)
        return;
    for (QObject *w : a->associatedObjects())
        if (auto *menu = qobject_cast<QWidget *>(w))
            menu->removeAction(a);
    a->deleteLater();
}

// The first entry whose path is the same as strFile ignoring case, or -1.
int intFindEntry(const QString &strFile)
{
    const QString strUpper = vb::UCase(strFile);
    for (int i = 0; i < gintMRUCount; ++i)
        if (vb::UCase(Tag(i)) == strUpper)
            return i;
    return -1;
}

// Makes room for a new entry: one more element while there are fewer than four, else the
// last entry falls out by being written over.
void MRUAddMenuElement(const QString &strFile) try {
    if (gintMRUCount < kMRUMax) {
        gintMRUCount = static_cast<int16_t>(gintMRUCount + 1);
        const int i = gintMRUCount - 1;
        if (gintMRUCount > 1)
            mnuMMru().push_back(NewMainElement(i));
        if (gblnMirrorAttached && static_cast<int>(gmnuFMru.size()) < gintMRUCount)
            gmnuFMru.push_back(NewEditorElement(i));
        // The main menu shows its entries only on the main menu's screen (SetMode shows them
        // there): an entry that appeared while a wizard or the manual screen is up would let
        // a file be launched from under it.
        MMru(i)->setVisible(gintMode == 1);
        if (QAction *a = FMru(i))
            a->setVisible(true);
    }
    MRUReorderList(strFile, static_cast<int16_t>(gintMRUCount - 1));
} catch (...) {
    LogError("modMRU", "MRUAddMenuElement");
}

} // namespace

void MRUGetFileList() try {
    // The values as stored, most recent first, until the first one missing ("none"). A path
    // too long for the store reads as missing and ends the list there.
    QStringList strFiles;
    for (int i = 0;; ++i) {
        const QString strValue = strRegistryValueGet(QStringLiteral("MRUFile") + vb::Format00(i), QStringLiteral("none"));
        if (strValue == QLatin1String("none"))
            break;
        strFiles.append(strValue);
    }
    // Added from the last to the first, so the first stored is the first on the menu and of
    // more than four the most recent four stay.
    for (qsizetype i = strFiles.size() - 1; i >= 0; --i)
        MRUAddItem(strFiles[i]);
} catch (...) {
    LogError("modMRU", "MRUGetFileList");
}

void MRUSaveFileList() try {
    // Only the entries there are: values beyond the count stay in the store as they were.
    for (int i = 0; i < gintMRUCount; ++i)
        RegistryValuePut(QStringLiteral("MRUFile") + vb::Format00(i), Tag(i));
} catch (...) {
    LogError("modMRU", "MRUSaveFileList");
}

void MRUAddItem(const QString &strFile) try {
    const int i = intFindEntry(strFile);
    if (i >= 0)
        MRUReorderList(strFile, static_cast<int16_t>(i));
    else
        MRUAddMenuElement(strFile);
} catch (...) {
    LogError("modMRU", "MRUAddItem");
}

void MRURemoveItem(const QString &strFile) try {
    const int intIndex = intFindEntry(strFile);
    if (intIndex < 0)
        return;   // not on the list (a file from the command line): nothing to take out
    for (int i = intIndex; i <= gintMRUCount - 2; ++i)
        SetTag(i, Tag(i + 1));
    const int intLast = gintMRUCount - 1;
    // An element goes out of its menu at once and is deleted once control is back in the
    // event loop: the click that led here may still be in its own action's handler.
    if (intLast > 0) {
        DropAction(mnuMMru().back());
        mnuMMru().pop_back();
    } else {
        // Element 0 belongs to the form: it stays, hidden and empty.
        MMru(0)->setVisible(false);
        MMru(0)->setText(QString());
        MMru(0)->setData(QString());
    }
    if (gblnMirrorAttached && static_cast<int>(gmnuFMru.size()) > intLast) {
        DropAction(gmnuFMru.back().data());
        gmnuFMru.pop_back();
    }
    gintMRUCount = static_cast<int16_t>(gintMRUCount - 1);
    RebuildCaptions();
} catch (...) {
    LogError("modMRU", "MRURemoveItem");
}

void MRUReorderList(const QString &strFile, int16_t intIndex) try {
    for (int i = intIndex; i >= 1; --i)
        SetTag(i, Tag(i - 1));
    SetTag(0, strFile);
    RebuildCaptions();
} catch (...) {
    LogError("modMRU", "MRUReorderList");
}

void mnuMMru_Click(int intIndex) try {
    LaunchFile(Tag(intIndex), static_cast<int16_t>(intIndex));
} catch (...) {
    LogError("frmMain", "mnuMMru_Click");
}

void MRUAttachEditorMenu(QMenu *mnuFile, QAction *actBefore, void (*pfnClick)(int intIndex)) try {
    MRUDetachEditorMenu();
    gmnuEditorFile = mnuFile;
    gactEditorBefore = actBefore;
    gpfnEditorClick = pfnClick;
    gblnMirrorAttached = mnuFile != nullptr;
} catch (...) {
    LogError("modMRU", "MRUAttachEditorMenu");
}

void MRUSetEditingMenu() try {
    if (!gblnMirrorAttached)
        return;
    for (int i = 1; i <= gintMRUCount; ++i) {
        if (static_cast<int>(gmnuFMru.size()) < i)
            gmnuFMru.push_back(NewEditorElement(i - 1));
        QAction *a = gmnuFMru[static_cast<size_t>(i - 1)].data();
        if (!a)
            continue;
        a->setText(MMru(i - 1)->text());
        a->setData(MMru(i - 1)->data());
        a->setVisible(true);
    }
} catch (...) {
    LogError("modMRU", "MRUSetEditingMenu");
}

void MRUDetachEditorMenu()
{
    // The editor's menu may already be on its way out: its actions are its children.
    for (const QPointer<QAction> &a : gmnuFMru)
        DropAction(a.data());
    gmnuFMru.clear();
    gblnMirrorAttached = false;
    gmnuEditorFile = nullptr;
    gactEditorBefore = nullptr;
    gpfnEditorClick = nullptr;
}
