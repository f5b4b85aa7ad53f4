// The forms collection: every loaded form of the program, in the order it was loaded.
//
// Each form has one global instance, made on first use and reached by the form's name:
// `frmMain()` loads frmMain if it isn't loaded and returns it. `Unload(form)` takes it out
// of the collection, so the next `frmMain()` loads a fresh one. The message box walks the
// collection to find its owner and to disable every form; `Shutdown` unloads it from the
// last form to the first.
#pragma once

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>

// How a form is being unloaded, as its Form_QueryUnload is told.
enum : int {
    vbFormControlMenu = 0,   // the operator's close box
    vbFormCode = 1,          // Unload from the program
};

// What a form may add to the plain widget: its load and unload events.
// A form class derives from its Qt widget class and from Form.
class Form {
public:
    virtual ~Form() = default;
    // Runs once the form is in the collection, before anyone else sees it.
    virtual void Form_Load() {}
    // Return true to cancel the unload.
    virtual bool Form_QueryUnload(int /*intUnloadMode*/) { return false; }
    // The last word before the form goes.
    virtual void Form_Unload() {}
};

// The loaded forms in collection order (index 0 is the first loaded).
QList<QWidget *> Forms();
// The collection index of a loaded form, or -1.
int FormIndex(const QWidget *form);
// True when the form is loaded (in the collection).
bool IsLoaded(const QWidget *form);

// Puts a newly made form into the collection; `forget` clears its global instance when it
// is unloaded. Used by FormInstance; a form made any other way (a test's stand-in window)
// may register itself with an empty `forget`.
void RegisterForm(QWidget *form, std::function<void()> forget);

// Unloads a form: its Form_QueryUnload (unless cancelled), Form_Unload, out of the
// collection, hidden (which also ends its modal show) and deleted once control is back
// in the event loop. Returns false when the form cancelled. Unloading a form that isn't
// loaded does nothing.
bool Unload(QWidget *form);

// Shows a form modally over `owner` (or over the first visible form) and returns when it
// has been hidden or unloaded. Dialogs keep their own exec(); other windows get a local loop.
void ShowModal(QWidget *form, QWidget *owner = nullptr);

// The global instance behind a form's name: loads it on first use.
template <class F>
F *FormInstance(F *&slot)
{
    if (!slot) {
        F *form = new F();
        slot = form;
        RegisterForm(form, [&slot, form] {
            if (slot == form)
                slot = nullptr;
        });
        static_cast<Form *>(form)->Form_Load();
    }
    return slot;
}

// Centres a form over the main window (or the screen when there is none shown).
void CentreOverMain(QWidget *form);
