#include "platform/forms.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <vector>

namespace {

struct Entry {
    QPointer<QWidget> form;
    std::function<void()> forget;
};

std::vector<Entry> &collection()
{
    static std::vector<Entry> entries;
    return entries;
}

// Forms deleted behind our back (a test deleting a widget) drop out of the collection.
void prune()
{
    auto &c = collection();
    std::erase_if(c, [](const Entry &e) { return e.form.isNull(); });
}

} // namespace

QList<QWidget *> Forms()
{
    prune();
    QList<QWidget *> out;
    for (const Entry &e : collection())
        out << e.form.data();
    return out;
}

int FormIndex(const QWidget *form)
{
    prune();
    const auto &c = collection();
    for (size_t i = 0; i < c.size(); ++i)
        if (c[i].form == form)
            return static_cast<int>(i);
    return -1;
}

bool IsLoaded(const QWidget *form) { return form && FormIndex(form) >= 0; }

void RegisterForm(QWidget *form, std::function<void()> forget)
{
    if (!form || IsLoaded(form))
        return;
    collection().push_back({form, std::move(forget)});
}

bool Unload(QWidget *form)
{
    if (!IsLoaded(form))
        return true;
    Form *f = dynamic_cast<Form *>(form);
    if (f && f->Form_QueryUnload(vbFormCode))
        return false;
    if (f)
        f->Form_Unload();
    // The form may have been unloaded from inside its own events.
    int index = FormIndex(form);
    if (index < 0)
        return true;
    auto &c = collection();
    std::function<void()> forget = std::move(c[static_cast<size_t>(index)].forget);
    c.erase(c.begin() + index);
    if (forget)
        forget();
    // An unloaded form's timers die with it at once, not when the object is finally
    // deleted: a tick in between would load the form again through its name.
    for (QTimer *t : form->findChildren<QTimer *>())
        t->stop();
    form->hide();   // ends a modal show
    form->deleteLater();
    return true;
}

void ShowModal(QWidget *form, QWidget *owner)
{
    if (!form)
        return;
    if (owner && !form->isVisible())
        CentreOverMain(form);
    QPointer<QWidget> guard(form);
    if (auto *dlg = qobject_cast<QDialog *>(form)) {
        dlg->setWindowModality(Qt::ApplicationModal);
        dlg->exec();
        return;
    }
    form->setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    // The loop ends when the form is hidden or destroyed.
    struct HideWatch : QObject {
        QEventLoop *loop;
        bool eventFilter(QObject *, QEvent *e) override
        {
            if (e->type() == QEvent::Hide)
                loop->quit();
            return false;
        }
    } watch;
    watch.loop = &loop;
    form->installEventFilter(&watch);
    QObject::connect(form, &QObject::destroyed, &loop, &QEventLoop::quit);
    form->show();
    form->raise();
    form->activateWindow();
    if (form->isVisible())
        loop.exec();
    if (guard)
        guard->removeEventFilter(&watch);
}

void CentreOverMain(QWidget *form)
{
    if (!form)
        return;
    QWidget *main = nullptr;
    for (QWidget *w : Forms())
        if (w != form && w->isVisible() && qobject_cast<QWidget *>(w) && w->inherits("QMainWindow")) {
            main = w;
            break;
        }
    QRect area;
    if (main)
        area = main->frameGeometry();
    else if (QScreen *s = QGuiApplication::primaryScreen())
        area = s->availableGeometry();
    else
        return;
    QSize size = form->frameGeometry().size();
    if (size.isEmpty())
        size = form->sizeHint();
    form->move(area.center() - QPoint(size.width() / 2, size.height() / 2));
}
