// The panels of the main window other than the main menu. Each carries the controls the
// main window itself sets up; the parts that own the screens fill in the rest.
#include "core/main_panels.h"
#include "core/widget_names.h"

#include "core/artwork.h"

#include <QGroupBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>

namespace {

// Every panel: a white card with a thin border, so one screen at a time stands out.
void card(QFrame *f, const char *name, const QString &accessible, int w, int h)
{
    f->setObjectName(QString::fromLatin1(name));
    f->setAccessibleName(accessible);
    f->setFixedSize(w, h);
    f->setStyleSheet(QStringLiteral("#%1 { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }")
                         .arg(QString::fromLatin1(name)));
    f->hide();
}

using ui::named;
using ui::described;


QTextEdit *readOnlyText(QWidget *parent, const char *name, const QString &accessible)
{
    auto *t = named(new QTextEdit(parent), name, accessible);
    t->setReadOnly(true);
    return t;
}

QLabel *title(QWidget *parent, const char *name, const QString &text, int x, int y, int w)
{
    auto *l = described(new QLabel(text, parent), name, QStringLiteral("Title"));
    QFont f = l->font();
    f.setPointSize(13);
    f.setBold(true);
    l->setFont(f);
    l->setGeometry(x, y, w, 28);
    return l;
}

} // namespace

PicMachining::PicMachining(QWidget *parent) : QFrame(parent)
{
    card(this, "picMachining", QStringLiteral("Machining"), 700, 450);
    txtMillHeader = readOnlyText(this, "txtMillHeader", QStringLiteral("NC file header"));
    txtMillHeader->setGeometry(18, 16, 664, 110);
    rtbMillCode = readOnlyText(this, "rtbMillCode", QStringLiteral("NC program"));
    rtbMillCode->setGeometry(18, 136, 664, 220);
    QFont mono(QStringLiteral("Monospace"));
    mono.setStyleHint(QFont::TypeWriter);
    rtbMillCode->setFont(mono);
    pgbMillProg = named(new QProgressBar(this), "pgbMillProg", QStringLiteral("Machining progress"));
    pgbMillProg->setRange(0, 100);
    pgbMillProg->setGeometry(18, 366, 664, 22);
    lblEscape = described(new QLabel(QStringLiteral("To interrupt machining - press the Escape key"), this), "lblEscape");
    QFont f = lblEscape->font();
    f.setPointSize(12);
    f.setBold(true);
    lblEscape->setFont(f);
    lblEscape->setAlignment(Qt::AlignCenter);
    lblEscape->setStyleSheet(QStringLiteral("color: #b91c1c;"));
    lblEscape->setGeometry(0, 400, 460, 30);
}

PicBilletSize::PicBilletSize(QWidget *parent) : QFrame(parent)
{
    card(this, "picBilletSize", QStringLiteral("Billet size and placing"), 660, 450);
    lblBilletTitle = title(this, "lblBilletTitle", QString(), 18, 12, 620);
    cmdBilletReturn = described(new QPushButton(QStringLiteral("&Return"), this), "cmdBilletReturn");
    cmdBilletReturn->setGeometry(540, 404, 104, 32);
}

PicHeader::PicHeader(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picHeader"));
    setAccessibleName(QStringLiteral("File Header"));
    setFixedSize(250, 430);
    lblHeader = described(new QLabel(QStringLiteral("File Header"), this), "lblHeader");
    QFont f = lblHeader->font();
    f.setBold(true);
    lblHeader->setFont(f);
    lblHeader->setAlignment(Qt::AlignCenter);
    lblHeader->setFixedSize(250, 22);
    rtbHeader = readOnlyText(this, "rtbHeader", QStringLiteral("File Header"));
    hide();
}
