#include "link/frm_rate_test.h"

#include "core/artwork.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/vb.h"
#include "guide/rich_page.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "platform/clock.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace {
FrmRateTest *g_frmRateTest = nullptr;

double dblClock() { return appClock().seconds(); }   // seconds, monotonic

// imgTick: a green tick, drawn so that it needs no picture file. 20 x 16 pixels.
QPixmap TickPicture()
{
    QPixmap pm(20, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor(0x1a, 0x8a, 0x2a), 3.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    QPainterPath path;
    path.moveTo(3, 8.5);
    path.lineTo(8, 13);
    path.lineTo(17, 3);
    p.drawPath(path);
    return pm;
}

// The instructions, each item a paragraph, in the page colours (blue headings, the red warning).
QString RateTestPage()
{
    using page::Coloured;
    using page::Esc;
    using page::Para;
    QString html = QStringLiteral("<body style=\"font-size:10pt\">");
    html += Para(Coloured(page::kBlue, QStringLiteral("Purpose:")));
    html += Para(Esc(QStringLiteral("This test is designed to find the optimum Rapid Traverse rate for Brantok that "
                                    "can be supported reliably by your PC.")));
    html += Para(Coloured(page::kBlue, QStringLiteral("Method:")));
    html += Para(Esc(QStringLiteral("Commands are sent to the Brantok controller but without producing any movement "
                                    "at the Mill.")));
    html += Para(Esc(QStringLiteral("Each preset rate is tested for a period of one minute during which time the test "
                                    "program analyses the performance of the PC as it tries to keep pace with requests "
                                    "for more data coming from the Brantok controller.")));
    html += Para(Esc(QStringLiteral(
        "The displayed Test Factor indicates the processor time available to the PC between data requests from the "
        "Brantok controller - the higher the value of the Test Factor, the better able the PC is to support the "
        "Brantok controller. For reliable operation at a given Rapid Rate, the Test Factor must be above 10.")));
    html += Para(Coloured(page::kBlue, QStringLiteral("Instructions:")));
    html += Para(Esc(QStringLiteral("Make sure that the PC is connected to the Brantok controller and that the Mill is "
                                    "switched on.")));
    html += Para(Coloured(page::kRed, QStringLiteral("The spindle must not be rotating.")));
    html += Para(Coloured(page::kBlue, QStringLiteral("Click START to begin the test.")));
    html += Para(Esc(QStringLiteral("Click CANCEL at any time to abandon the test")));
    return html + QStringLiteral("</body>");
}

// The frame goes straight to the port (Output); the test counts it out itself.
void Output(const QByteArray &frame)
{
    if (SerialPort *port = comSerial(); port && port->isOpen())
        port->write(frame);
}

// Waits, pumping, until the port has handed every written byte to the line (OutBufferCount < 1).
void WaitOutputEmpty()
{
    while (comSerial() && comSerial()->isOpen() && comSerial()->bytesToWrite() >= 1)
        DoEvents();
}
} // namespace

FrmRateTest *frmRateTest() { return FormInstance(g_frmRateTest); }
bool frmRateTestLoaded() { return g_frmRateTest != nullptr; }

FrmRateTest::FrmRateTest()
{
    setObjectName(QStringLiteral("frmRateTest"));
    setWindowTitle(QStringLiteral("Rapid Rate Test"));
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(14, 12, 14, 12);
    rtbRateTest = new QTextEdit(this);
    rtbRateTest->setObjectName(QStringLiteral("rtbRateTest"));
    rtbRateTest->setAccessibleName(QStringLiteral("About the rate test"));
    rtbRateTest->setReadOnly(true);
    rtbRateTest->setFocusPolicy(Qt::NoFocus);
    rtbRateTest->setMinimumHeight(340);
    lay->addWidget(rtbRateTest, 1);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    const QString titles[3] = {QStringLiteral("Test rate"), QStringLiteral("Test Factor"),
                               QStringLiteral("Progress (each test lasts for one minute)")};
    const int titleColumn[3] = {0, 2, 1};
    for (int i = 0; i < 3; ++i) {
        lblTitle[i] = new QLabel(titles[i], this);
        lblTitle[i]->setObjectName(QStringLiteral("lblTitle%1").arg(i));
        QFont f = lblTitle[i]->font();
        f.setBold(true);
        lblTitle[i]->setFont(f);
        grid->addWidget(lblTitle[i], 0, titleColumn[i]);
    }
    const QPixmap tick = TickPicture();
    for (int i = 0; i < kRatePresets; ++i) {
        lblSpeed[i] = new QLabel(QString::number(intPresetRate(i)) + QStringLiteral(" mm/min"), this);
        lblSpeed[i]->setObjectName(QStringLiteral("lblSpeed%1").arg(i));
        pgbQuick[i] = new QProgressBar(this);
        pgbQuick[i]->setObjectName(QStringLiteral("pgbQuick%1").arg(i));
        pgbQuick[i]->setRange(0, 100);
        pgbQuick[i]->setValue(0);
        pgbQuick[i]->setTextVisible(false);
        pgbQuick[i]->setFixedHeight(14);
        pgbQuick[i]->setAccessibleName(QStringLiteral("Progress at %1 mm/min").arg(intPresetRate(i)));
        lblResult[i] = new QLabel(this);
        lblResult[i]->setObjectName(QStringLiteral("lblResult%1").arg(i));
        lblResult[i]->setMinimumWidth(70);
        lblResult[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        lblResult[i]->setAccessibleDescription(QStringLiteral("Test Factor at %1 mm/min").arg(intPresetRate(i)));
        imgTick[i] = new QLabel(this);
        imgTick[i]->setObjectName(QStringLiteral("imgTick%1").arg(i));
        imgTick[i]->setPixmap(tick);
        imgTick[i]->setFixedSize(tick.size());
        imgTick[i]->setAccessibleName(QStringLiteral("Passed at %1 mm/min").arg(intPresetRate(i)));
        imgTick[i]->setVisible(false);
        grid->addWidget(lblSpeed[i], i + 1, 0);
        grid->addWidget(pgbQuick[i], i + 1, 1);
        grid->addWidget(lblResult[i], i + 1, 2);
        grid->addWidget(imgTick[i], i + 1, 3);
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(3, 20);
    lay->addLayout(grid);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    cmdStart = new QPushButton(QStringLiteral("Start"), this);
    cmdStart->setObjectName(QStringLiteral("cmdStart"));
    cmdStart->setAutoDefault(false);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    buttons->addWidget(cmdStart);
    buttons->addWidget(cmdCancel);
    lay->addLayout(buttons);
    tmrProgress = new QTimer(this);
    tmrProgress->setInterval(500);
    connect(tmrProgress, &QTimer::timeout, this, [this] { tmrProgress_Timer(); });
    connect(cmdStart, &QPushButton::clicked, this, [this] { cmdStart_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    resize(580, 700);
}

FrmRateTest::~FrmRateTest()
{
    if (g_frmRateTest == this)
        g_frmRateTest = nullptr;
}

void FrmRateTest::Form_Load() try {
    CentreOverMain(this);
    setWindowIcon(AppIcon());
    blnCancelled = false;
    intPreset = -1;
    rtbRateTest->setHtml(RateTestPage());
} catch (...) {
    LogError("frmRateTest", "Form_Load");
}

void FrmRateTest::cmdStart_Click() try {
    // 1. Nothing of the link may still be out.
    while (gintBuffersOut != 0)
        DoEvents();
    cmdStart->setEnabled(false);
    if (!blnControllerAvailable()) {
        CallShutdown();
        return;
    }
    SendReset();
    // 5. All seven presets, whatever the earlier ones gave.
    intPreset = -1;
    while (intPreset < kRatePresets - 1 && !blnCancelled) {
        ++intPreset;
        RateTest(intPresetRate(intPreset));
        if (!blnCancelled) {
            imgTick[intPreset]->setVisible(glngTestFactor >= kRatePassMark);
            lblResult[intPreset]->setText(QString::number(glngTestFactor));
        }
    }
    if (blnCancelled) {
        StdMsgBox(QStringLiteral("Rate Test cancelled"), vbInformation, QStringLiteral("Rate Test"));
        Unload(this);
        return;
    }
    std::array<QString, kRatePresets> results;
    for (int i = 0; i < kRatePresets; ++i)
        results[i] = lblResult[i]->text();
    const int16_t intRate = intPresetRate(intRecommendedPreset(results));
    StdMsgBox(QStringLiteral("Recommended Rapid Rate is ") + QString::number(intRate) + QStringLiteral(" mm/min"),
              vbInformation, QStringLiteral("Rate Test"));
    if (onRecommended)
        onRecommended(intRate);
    Unload(this);
} catch (...) {
    LogError("frmRateTest", "cmdStart_Click");
}

void FrmRateTest::RateTest(float sngRate) try {
    const QByteArray frame = RateTestFrame(sngRate);
    glngTestFactor = 1000000;
    // Two frames out, as the stream keeps them.
    Output(frame);
    WaitOutputEmpty();
    Output(frame);
    gintBuffersOut = 2;
    lngSent = 2;
    tmrProgress->start();
    dblStart = dblClock();
    const double dblEnd = dblStart + kRatePresetSeconds;
    // Each reply makes room for the next frame. A time-out has shown the alarm and left
    // nothing out: the next round sends at once.
    while (dblClock() < dblEnd && !blnCancelled) {
        if (blnGetReplies(false)) {
            WaitOutputEmpty();
            Output(frame);
            ++gintBuffersOut;
            ++lngSent;
        }
    }
    tmrProgress->stop();
    blnGetReplies(true);
} catch (...) {
    LogError("frmRateTest", "RateTest");
}

void FrmRateTest::tmrProgress_Timer() try {
    const double percent = (dblClock() - dblStart) / 0.6;
    if (intPreset < 0 || intPreset >= kRatePresets)
        vb::Err(vb::kSubscript);
    pgbQuick[intPreset]->setValue(percent > 100.0 ? 100 : static_cast<int>(vb::Int(percent)));
} catch (...) {
    LogError("frmRateTest", "tmrProgress_Timer");
}

void FrmRateTest::cmdCancel_Click() try {
    if (cmdStart->isEnabled())
        Unload(this);   // no test runs
    else
        blnCancelled = true;
} catch (...) {
    LogError("frmRateTest", "cmdCancel_Click");
}

void FrmRateTest::reject() { cmdCancel_Click(); }
