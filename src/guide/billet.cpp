// Billet help (see billet.h): the page, its five topics and the sliding billet.
#include "guide/billet.h"
#include "guide/rich_page.h"

#include "core/frm_main.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/main_panels.h"
#include "core/state.h"
#include "platform/keystate.h"

#include <QAction>
#include <QElapsedTimer>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>
#include <QThread>

#include <cmath>

namespace {

using namespace page;

int16_t gintTopic = 0;           // the page shown, 0 for none
bool gblnDrawing = false;        // a page is being drawn (the slide pumps events)
bool gblnReturning = false;      // cmdBilletReturn_Click is running
QString gstrReturnTag;           // cmdBilletReturn's tag: "Menu", "Explain" or "Header"
// The wizard's panels as ShowBillet found them, to give them back on the way to the wizard.
bool gblnSetMillWasShown = false;
bool gblnHeaderWasShown = false;

BilletPage gPage;
QPointer<PicBilletSize> gPageOwner;   // the panel gPage's controls live on

constexpr int kSlideMsPerMm = 3;   // the billet travels 1 mm every 3 ms: about 330 mm/s

// The billet's place and size per page, mm from the envelope's left-front corner.
struct Place {
    float x, y, w, h;
};
constexpr Place kSmallCentre{65.0f, 25.0f, 70.0f, 50.0f};
constexpr Place kSmallBad{-35.0f, 30.0f, 70.0f, 50.0f};   // a third of it left of the envelope
constexpr Place kLarge{40.0f, 20.0f, 150.0f, 70.0f};      // off-centre to the right and back

// The cutters of pages 4 and 5, radius in mm. With the large billet a 6 mm cutter's path
// stays inside the envelope; a 32 mm cutter's path crosses it at the right and at the back.
constexpr float kSmallRadius = 3.0f;
constexpr float kBigRadius = 16.0f;

QString BoldItalic(const QString &s) { return QStringLiteral("<b><i>") + Esc(s) + QStringLiteral("</i></b>"); }
const QString kCentreLine = BoldItalic(QStringLiteral("centre-line"));
// The page's paragraphs: left indent 100 twips, no space of their own above or below; the
// blank lines of page 1 are paragraphs of their own.
QString Line(const QString &html, int intSpaceAbove = 0)
{
    return QStringLiteral("<p style=\"margin-left:7px; margin-top:%1px; margin-bottom:0px\">").arg(intSpaceAbove) + html +
           QStringLiteral("</p>");
}
const QString kBlankLine = Line(QStringLiteral("&nbsp;"));

// Lets the page be drawn and the operator act while the billet travels.
void SlidePause()
{
    QElapsedTimer t;
    t.start();
    do {
        DoEvents();
        if (t.elapsed() < kSlideMsPerMm)
            QThread::msleep(1);
    } while (t.elapsed() < kSlideMsPerMm);
}

// Moves the billet to (x, y) one millimetre at a time, X first, then Y. A page left during
// the slide (Return, another screen) puts the billet at its place at once.
void SlideBillet(float x, float y)
{
    QPointer<BilletPicture> pic = gPage.imgTable;
    auto step = [&](float &pos, float target) {
        while (pic && !pic->parentWidget()->isHidden() && std::fabs(pos - target) >= 1.0f) {
            pos += pos < target ? 1.0f : -1.0f;
            pic->update();
            SlidePause();
        }
        if (pic)
            pos = target;
    };
    step(pic->sngBilletX, x);
    if (pic)
        step(pic->sngBilletY, y);
    if (pic)
        pic->update();
}

} // namespace

// --- The picture ------------------------------------------------------------------------

BilletPicture::BilletPicture(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("imgTable"));
    setAccessibleName(QStringLiteral("Mill table, working envelope and billet"));
}

void BilletPicture::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    // The scene, mm: the table from -60 to 260 in X and -35 to 135 in Y, the envelope at 0..200, 0..100.
    const qreal sx0 = -70, sx1 = 270, sy0 = -45, sy1 = 145;
    const qreal s = std::min(width() / (sx1 - sx0), height() / (sy1 - sy0));
    const qreal ox = (width() - (sx1 - sx0) * s) / 2, oy = (height() - (sy1 - sy0) * s) / 2;
    auto pt = [&](qreal x, qreal y) { return QPointF(ox + (x - sx0) * s, oy + (sy1 - y) * s); };
    auto rect = [&](qreal x, qreal y, qreal w, qreal h) { return QRectF(pt(x, y + h), pt(x + w, y)); };
    QFont small = font();
    small.setPixelSize(std::max(9, static_cast<int>(std::lround(7 * s))));
    p.setFont(small);

    // The table with its three T-slots.
    p.setPen(QPen(QColor(0x47, 0x55, 0x69), 1.5));
    p.setBrush(QColor(0xcb, 0xd5, 0xe1));
    p.drawRoundedRect(rect(-60, -35, 320, 170), 6 * s, 6 * s);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x94, 0xa3, 0xb8));
    for (qreal y : {6.0, 46.0, 86.0})
        p.drawRect(rect(-60, y, 320, 8));

    // The working envelope.
    const QRectF env = rect(0, 0, 200, 100);
    p.setBrush(QColor(0x1d, 0x4e, 0xd8, 28));
    p.setPen(QPen(QColor(0x1d, 0x4e, 0xd8), 2, Qt::DashLine));
    p.drawRect(env);
    p.setPen(QColor(0x1e, 0x3a, 0x8a));
    p.drawText(rect(80, -12, 120, 10), Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Working envelope"));
    if (blnDimensions) {
        QPen dim(QColor(0x1e, 0x3a, 0x8a), 1.2);
        p.setPen(dim);
        auto arrow = [&](QPointF a, QPointF b) {
            p.drawLine(a, b);
            const QPointF d = (b - a) / std::hypot(b.x() - a.x(), b.y() - a.y()) * 4 * s;
            const QPointF n(-d.y() / 2, d.x() / 2);
            for (auto [from, dir] : {std::pair{a, d}, std::pair{b, -d}})
                p.drawPolyline(QPolygonF({from + dir + n, from, from + dir - n}));
        };
        arrow(pt(0, -16), pt(200, -16));
        p.drawText(rect(70, -30, 60, 10), Qt::AlignCenter, QStringLiteral("X 200 mm"));
        arrow(pt(-16, 0), pt(-16, 100));
        p.save();
        p.translate(pt(-26, 50));
        p.rotate(-90);
        p.drawText(QRectF(-30 * s, -5 * s, 60 * s, 10 * s), Qt::AlignCenter, QStringLiteral("Y 100 mm"));
        p.restore();
    }
    if (!blnBillet)
        return;

    // The billet, and the part of it outside the envelope on the bad page.
    const QRectF billet = rect(sngBilletX, sngBilletY, sngBilletW, sngBilletH);
    p.setPen(QPen(QColor(0x92, 0x40, 0x0e), 1.5));
    p.setBrush(QColor(0xf2, 0xc4, 0x6d));
    p.drawRect(billet);
    if (blnSmallBad) {
        QPainterPath outside;
        outside.addRect(billet);
        QPainterPath inside;
        inside.addRect(env);
        outside = outside.subtracted(inside);
        p.setPen(QPen(QColor(0xdc, 0x26, 0x26), 2));
        p.setBrush(QBrush(QColor(0xdc, 0x26, 0x26), Qt::BDiagPattern));
        p.drawPath(outside);
    }
    p.setPen(QColor(0x78, 0x35, 0x0f));
    p.drawText(billet, Qt::AlignCenter, QStringLiteral("Billet"));

    // A cutter going round the billet: its centre-line path and the cutter on it.
    auto cutter = [&](float r, const QColor &c, const QString &label) {
        const QRectF path = rect(sngBilletX - r, sngBilletY - r, sngBilletW + 2 * r, sngBilletH + 2 * r);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(c, 1.6, Qt::DashDotLine));
        p.drawRoundedRect(path, r * s, r * s);
        const QPointF centre = pt(sngBilletX + sngBilletW + r, sngBilletY + sngBilletH / 2);
        QColor fill = c;
        fill.setAlpha(90);
        p.setPen(QPen(c, 1.5));
        p.setBrush(fill);
        p.drawEllipse(centre, r * s, r * s);
        p.drawLine(centre - QPointF(3, 0), centre + QPointF(3, 0));
        p.drawLine(centre - QPointF(0, 3), centre + QPointF(0, 3));
        p.setPen(c.darker(130));
        p.drawText(QRectF(centre.x() - 60 * s, centre.y() + (r + 2) * s, 120 * s, 10 * s), Qt::AlignCenter, label);
    };
    if (blnSmallTool)
        cutter(kSmallRadius, QColor(0x15, 0x80, 0x3d), QStringLiteral("Small cutter"));
    if (blnCutterBig)
        cutter(kBigRadius, QColor(0xdc, 0x26, 0x26), QStringLiteral("Large cutter"));
}

// --- The page ---------------------------------------------------------------------------

BilletPage &billetPage()
{
    PicBilletSize *panel = frmMain()->picBilletSize;
    if (gPageOwner == panel)
        return gPage;
    gPage = BilletPage();
    gPageOwner = panel;
    panel->lblBilletTitle->setText(QStringLiteral("Billet Size and Placing"));
    for (int16_t i = 1; i <= 5; ++i) {
        auto *e = new MenuEntry(i, panel);
        e->setObjectName(QStringLiteral("txtTopic"));
        e->setText(strBilletTopicCaption(i));
        QFont f = e->font();
        f.setPointSize(11);
        e->setFont(f);
        e->setGeometry(18, 52 + (i - 1) * 34, 224, 30);
        QObject::connect(e, &MenuEntry::mouseMoved, panel, [](int k) { ShowTopic(static_cast<int16_t>(k)); });
        QObject::connect(e, &MenuEntry::gotFocus, panel, [](int k) { ShowTopic(static_cast<int16_t>(k)); });
        QObject::connect(e, &MenuEntry::clicked, panel, [](int k) { ShowTopic(static_cast<int16_t>(k)); });
        gPage.txtTopic[static_cast<size_t>(i)] = e;
    }
    gPage.imgTable = new BilletPicture(panel);
    gPage.imgTable->setGeometry(252, 48, 392, 226);
    gPage.rtbBillet = new QTextEdit(panel);
    gPage.rtbBillet->setObjectName(QStringLiteral("rtbBillet"));
    gPage.rtbBillet->setAccessibleName(QStringLiteral("Billet help text"));
    gPage.rtbBillet->setReadOnly(true);
    gPage.rtbBillet->setGeometry(18, 282, 626, 114);
    gPage.cmdBilletReturn = panel->cmdBilletReturn;
    QObject::connect(gPage.cmdBilletReturn, &QPushButton::clicked, panel, [] { cmdBilletReturn_Click(); });
    return gPage;
}

QString strBilletTopicCaption(int16_t intTopic)
{
    static const char *const captions[] = {"Working Envelope", "Badly Placed Billet", "Well Placed Billet",
                                           "Small Cutter round Billet", "Large Cutter round Billet"};
    return intTopic >= 1 && intTopic <= 5 ? QString::fromLatin1(captions[intTopic - 1]) : QString();
}

QString strBilletTopicText(int16_t intTopic)
{
    auto text = [](const char *s) { return Esc(QString::fromLatin1(s)); };
    const QString strLarge =
        text("The picture shows a large billet which is not placed symmetrically in the working envelope. "
             "Because the diameter of the tool cutting the billet perimeter is ");
    QString body;
    switch (intTopic) {
    case 1:
        body = Line(text("This is the biggest rectangle which can be traced on the mill table by the tool ") + kCentreLine +
                    QStringLiteral(".")) +
               kBlankLine + Line(text("Its size in X is 200mm and in Y 100mm.")) + kBlankLine +
               Line(text("Note: a very small number of the last machines made have a maximum Y movement of 125mm."));
        break;
    case 2:
        body = Line(text("The picture shows a badly placed billet. It is partly outside the working envelope. "
                         "If the code contains a tool ") +
                    kCentreLine +
                    text(" move to a point outside the working envelope, the mill table will hit an end stop before it "
                         "gets there. Machining must be stopped at once: hit Escape on the PC keyboard."));
        break;
    case 3:
        body = Line(text("The picture shows a well placed billet. It is central in the working envelope. With a small "
                         "billet, 'near enough is good enough'. The bigger the billet, the greater the care needed to "
                         "place it centrally."));
        break;
    case 4:
        body = Line(strLarge + text("small, the ") + kCentreLine +
                    text(" of the tool always stays inside the working envelope. The cut will be successful."));
        break;
    case 5:
        body = Line(strLarge + text("large, the ") + kCentreLine +
                    text(" of the tool is outside the working envelope on two of the four sides.")) +
               Line(text("The cut will fail because the mill table will hit an end-stop when it tries to move to the "
                         "cutting position. ") +
                        Coloured(kRed, QStringLiteral("The machining attempt must be stopped at once.")),
                    6);
        break;
    default:
        break;
    }
    return QStringLiteral("<html><body style=\"font-size:10pt\">") + body + QStringLiteral("</body></html>");
}

int16_t BilletTopic() { return gintTopic; }
QString BilletReturnTag() { return gstrReturnTag; }

void ShowBillet(const QString &strReturn) try {
    FrmMain *f = frmMain();
    BilletPage &pg = billetPage();
    gstrReturnTag = strReturn;
    for (const char *key : {"Back", "Settings", "Edit"})
        f->tlbButton(QString::fromLatin1(key))->setEnabled(false);
    gblnSetMillWasShown = f->picSetMill->isVisibleTo(f->client);
    gblnHeaderWasShown = f->picHeader->isVisibleTo(f->client);
    for (QWidget *p : std::initializer_list<QWidget *>{f->picMenu, f->picMethod, f->picKeyboard, f->picSetMill,
                                                      f->picOffset, f->picTools, f->picMachining, f->picHeader})
        p->hide();
    gintTopic = 0;
    f->CentrePanel(f->picBilletSize);
    f->picBilletSize->raise();
    f->picBilletSize->show();
    pg.cmdBilletReturn->setFocus();
    ShowTopic(1);
} catch (...) {
    LogError("frmMain", "ShowBillet");
}

void ShowTopic(int16_t intTopic) try {
    // 1. One page at a time: a mouse move that arrives during the slide is dropped.
    if (gblnDrawing || intTopic == gintTopic || intTopic < 1 || intTopic > 5)
        return;
    gblnDrawing = true;
    gintTopic = intTopic;
    BilletPage &pg = billetPage();
    // 2. The list: the page shown in red.
    for (int16_t i = 1; i <= 5; ++i)
        pg.txtTopic[static_cast<size_t>(i)]->setForeColor(i == intTopic ? kMenuRed : kMenuBlue);
    // 3. The tools and markers off.
    BilletPicture *pic = pg.imgTable;
    pic->blnSmallBad = pic->blnSmallTool = pic->blnCutterBig = false;
    pic->blnDimensions = intTopic == 1;
    pic->setAccessibleDescription(strBilletTopicCaption(intTopic));
    // 4. The text.
    pg.rtbBillet->setHtml(strBilletTopicText(intTopic));
    // 5. The billet to its place, seen to travel.
    const Place *place = nullptr;
    switch (intTopic) {
    case 2: place = &kSmallBad; break;
    case 3: place = &kSmallCentre; break;
    case 4: case 5: place = &kLarge; break;
    default: break;
    }
    pic->blnBillet = place != nullptr;
    if (place) {
        pic->sngBilletW = place->w;
        pic->sngBilletH = place->h;
        SlideBillet(place->x, place->y);
    }
    // 6. What the page shows once the billet is in place (unless the window went meanwhile).
    if (gPageOwner) {
        pic->blnSmallBad = intTopic == 2;
        pic->blnSmallTool = intTopic == 4;
        pic->blnCutterBig = intTopic == 5;
        pic->update();
    }
    // 7.
    gblnDrawing = false;
} catch (...) {
    LogError("frmMain", "ShowTopic");
}

void cmdBilletReturn_Click() try {
    if (gblnReturning)
        return;
    gblnReturning = true;
    // The press that closes the page must not act on the page below.
    WaitEnterSpaceUp();
    FrmMain *f = frmMain();
    f->picBilletSize->hide();
    if (gstrReturnTag == QLatin1String("Header") || gstrReturnTag == QLatin1String("Explain")) {
        // Back to the wizard's page as it was.
        f->picSetMill->setVisible(gblnSetMillWasShown || gintMode == 3);
        f->picHeader->setVisible(gblnHeaderWasShown || gstrReturnTag == QLatin1String("Header"));
        f->picSetMill->cmdSetNav[2]->setEnabled(true);
    } else if (gstrReturnTag == QLatin1String("Menu")) {
        SetMode(1);
    }
    gblnReturning = false;
} catch (...) {
    LogError("frmMain", "cmdBilletReturn_Click");
}
