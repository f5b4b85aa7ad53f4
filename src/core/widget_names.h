// How the forms name their controls: the object name the code and the tests find a control by,
// and what assistive technology reads. A control with a text of its own (a label, a button) is
// read by that text, so it gets at most a description of its place; only a control without text
// (a picture, a lamp, a painted panel, an unlabelled box) is given an accessible name.
#pragma once

#include <QString>

namespace ui {

// An empty accessible name leaves the control's own (its text).
template <class W>
W *named(W *w, const char *name, const QString &accessible = QString())
{
    w->setObjectName(QString::fromLatin1(name));
    if (!accessible.isEmpty())
        w->setAccessibleName(accessible);
    return w;
}

template <class W>
W *described(W *w, const char *name, const QString &description = QString())
{
    w->setObjectName(QString::fromLatin1(name));
    if (!description.isEmpty())
        w->setAccessibleDescription(description);
    return w;
}

} // namespace ui
