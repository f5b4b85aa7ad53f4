// The four pages of frmSettings and the Linux serial-port read-out beside "Com 1".."Com 4".
// The texts, tool tips and access keys are the dialog's own, word for word; the tool tips
// on the ports and on the rapid keys were written for a sibling lathe product and are kept
// as they stand.
#include "options/frm_settings.h"

#include "core/vb.h"
#include "platform/serial_port.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QSerialPortInfo>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QString kPortTip = QStringLiteral("Indicate which Com Port your Lathe Controller is connected to.");

QLabel *WrappedLabel(const QString &text, const char *name, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(QString::fromLatin1(name));
    l->setWordWrap(true);
    return l;
}

} // namespace

UpDown::UpDown(QLineEdit *buddy, int min, int max, const QString &axis, QWidget *parent)
    : QWidget(parent), m_buddy(buddy), m_min(min), m_max(max)
{
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->setSpacing(0);
    up = new QToolButton(this);
    up->setArrowType(Qt::UpArrow);
    up->setAccessibleName(axis + QStringLiteral(" backlash up"));
    down = new QToolButton(this);
    down->setArrowType(Qt::DownArrow);
    down->setAccessibleName(axis + QStringLiteral(" backlash down"));
    for (QToolButton *b : {up, down}) {
        b->setFixedSize(18, 12);
        b->setAutoRepeat(true);
        b->setFocusPolicy(Qt::NoFocus);
        lay->addWidget(b);
    }
    connect(up, &QToolButton::clicked, this, [this] { step(1); });
    connect(down, &QToolButton::clicked, this, [this] { step(-1); });
}

// The arrows start from the box's number as read by the leading-number parse (so "abc"
// counts as 0) and stay within the range.
void UpDown::step(int delta)
{
    const double v = vb::Val(m_buddy->text());
    const int now = v < m_min ? m_min : v > m_max ? m_max : static_cast<int>(v);
    m_buddy->setText(QString::number(std::clamp(now + delta, m_min, m_max)));
}

void FrmSettings::BuildMillPage(QWidget *page)
{
    auto *lay = new QVBoxLayout(page);
    chkOnline = new QCheckBox(QStringLiteral("Use Mill Controller  "), page);
    chkOnline->setObjectName(QStringLiteral("chkOnline"));
    chkOnline->setToolTip(QStringLiteral("Check this box if you have the Lovetch Lathe Controller connected to your "
                                         "PC. Clear this box to work 'off-line'."));
    lay->addWidget(chkOnline);
    fraComms = new QGroupBox(QStringLiteral("Serial Port Connection"), page);
    fraComms->setObjectName(QStringLiteral("fraComms"));
    auto *grid = new QGridLayout(fraComms);
    for (int i = 0; i < 4; ++i) {
        optComms[i] = new QRadioButton(QStringLiteral("Com %1").arg(i + 1), fraComms);
        optComms[i]->setObjectName(QStringLiteral("optComms%1").arg(i));
        optComms[i]->setToolTip(kPortTip);
        lblDevice[i] = new QLabel(fraComms);
        lblDevice[i]->setObjectName(QStringLiteral("lblDevice%1").arg(i));
        lblDevice[i]->setStyleSheet(QStringLiteral("color: #505050;"));
        grid->addWidget(optComms[i], i / 2, (i % 2) * 2);
        grid->addWidget(lblDevice[i], i / 2, (i % 2) * 2 + 1);
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    lblComms = WrappedLabel(QStringLiteral("For Brantok to control your F1 Mill, check 'Use Mill Controller' and "
                                           "select the appropriate Comms Port. Uncheck 'Use Mill Controller' for "
                                           "offline simulation."),
                            "lblComms", fraComms);
    grid->addWidget(lblComms, 2, 0, 1, 4);
    lay->addWidget(fraComms);
    chkShowTime = new QCheckBox(QStringLiteral("Show elapsed machining time"), page);
    chkShowTime->setObjectName(QStringLiteral("chkShowTime"));
    chkWoodworker = new QCheckBox(QStringLiteral("Mill is an F1 WoodWorker"), page);
    chkWoodworker->setObjectName(QStringLiteral("chkWoodworker"));
    chkKeepFiles = new QCheckBox(QStringLiteral("Retain calculated Mill steps  "), page);
    chkKeepFiles->setObjectName(QStringLiteral("chkKeepFiles"));
    lay->addWidget(chkShowTime);
    lay->addWidget(chkWoodworker);
    lay->addWidget(chkKeepFiles);
    lay->addStretch();
}

void FrmSettings::BuildMachiningPage(QWidget *page)
{
    auto *lay = new QVBoxLayout(page);
    fraPlay = new QGroupBox(QStringLiteral("Backlash Compensation"), page);
    fraPlay->setObjectName(QStringLiteral("fraPlay"));
    auto *grid = new QGridLayout(fraPlay);
    lblPlay[0] = WrappedLabel(QStringLiteral("For automatic backlash compensation, set the number of backlash steps "
                                             "for each axis. Note: 1 step = 0.014 mm"),
                              "lblPlay0", fraPlay);
    grid->addWidget(lblPlay[0], 0, 0, 1, 9);
    const char *axes[] = {"X", "Y", "Z"};
    for (int i = 0; i < 3; ++i) {
        lblPlay[i + 1] = new QLabel(QString::fromLatin1(axes[i]), fraPlay);
        lblPlay[i + 1]->setObjectName(QStringLiteral("lblPlay%1").arg(i + 1));
        lblPlay[i + 1]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        txtPlay[i] = new QLineEdit(fraPlay);
        txtPlay[i]->setObjectName(QStringLiteral("txtPlay%1").arg(i));
        txtPlay[i]->setFixedWidth(36);
        lblPlay[i + 1]->setBuddy(txtPlay[i]);
        updPlay[i] = new UpDown(txtPlay[i], 0, 9, QString::fromLatin1(axes[i]), fraPlay);
        grid->addWidget(lblPlay[i + 1], 1, i * 3);
        grid->addWidget(txtPlay[i], 1, i * 3 + 1);
        grid->addWidget(updPlay[i], 1, i * 3 + 2);
    }
    grid->setColumnStretch(8, 1);
    lay->addWidget(fraPlay);
    auto *rapid = new QHBoxLayout;
    lblRapid = new QLabel(QStringLiteral("Rapid Traverse speed (mm/min)"), page);
    lblRapid->setObjectName(QStringLiteral("lblRapid"));
    txtRapid = new QLineEdit(page);
    txtRapid->setObjectName(QStringLiteral("txtRapid"));
    txtRapid->setFixedWidth(70);
    lblRapid->setBuddy(txtRapid);
    rapid->addWidget(lblRapid);
    rapid->addWidget(txtRapid);
    rapid->addStretch();
    lay->addSpacing(8);
    lay->addLayout(rapid);
    cmdRateTest = new QPushButton(QStringLiteral("&Rapid Rate Test ..."), page);
    cmdRateTest->setObjectName(QStringLiteral("cmdRateTest"));
    auto *test = new QHBoxLayout;
    test->addWidget(cmdRateTest);
    test->addStretch();
    lay->addLayout(test);
    lay->addStretch();
}

void FrmSettings::BuildKeyboardPage(QWidget *page)
{
    auto *lay = new QVBoxLayout(page);
    optRapid[0] = new QRadioButton(QStringLiteral("Zero + Dot + Direction"), page);
    optRapid[1] = new QRadioButton(QStringLiteral("Zero + Direction"), page);
    for (int i = 0; i < 2; ++i) {
        optRapid[i]->setObjectName(QStringLiteral("optRapid%1").arg(i));
        optRapid[i]->setToolTip(kPortTip);
        lay->addWidget(optRapid[i]);
    }
    lblKeyTip = WrappedLabel(
        QStringLiteral("The default for producing Rapid Traverse under manual control requires you to hold down the "
                       "'Zero' and 'Dot' keys on the numeric keypad while pressing a direction key. If this three-key "
                       "safety feature is not supported by your keyboard you may select the two key option. However, "
                       "it is strongly recommended that you try a different keyboard."),
        "lblKeyTip", page);
    lay->addSpacing(8);
    lay->addWidget(lblKeyTip);
    lay->addStretch();
}

void FrmSettings::BuildPasswordPage(QWidget *page)
{
    auto *lay = new QGridLayout(page);
    lblHelp[0] = WrappedLabel(QString(), "lblHelp0", page);
    lblHelp[1] = WrappedLabel(QStringLiteral("Please enter a password (use any characters up to a maximum of 6)"),
                              "lblHelp1", page);
    lblHelp[2] = WrappedLabel(QStringLiteral("... and retype the same password for confirmation"), "lblHelp2", page);
    for (int i = 0; i < 2; ++i) {
        txtPass[i] = new QLineEdit(page);
        txtPass[i]->setObjectName(QStringLiteral("txtPass%1").arg(i));
        txtPass[i]->setEchoMode(QLineEdit::Password);
        txtPass[i]->setMaxLength(6);
        txtPass[i]->setFixedWidth(110);
        lblHelp[i + 1]->setBuddy(txtPass[i]);
    }
    cmdPswd = new QPushButton(QStringLiteral("Set &Password"), page);
    cmdPswd->setObjectName(QStringLiteral("cmdPswd"));
    lblOops = new QLabel(QStringLiteral("Oops! try again ..."), page);
    lblOops->setObjectName(QStringLiteral("lblOops"));
    lblOops->setStyleSheet(QStringLiteral("color: #c00000; font-weight: bold;"));
    lblOops->setVisible(false);
    lay->addWidget(lblHelp[0], 0, 0, 1, 3);
    lay->addWidget(lblHelp[1], 1, 0, 1, 3);
    lay->addWidget(txtPass[0], 2, 0);
    lay->addWidget(lblHelp[2], 3, 0, 1, 3);
    lay->addWidget(txtPass[1], 4, 0);
    lay->addWidget(cmdPswd, 4, 1);
    lay->addWidget(lblOops, 5, 0, 1, 3);
    lay->setColumnStretch(2, 1);
    lay->setRowStretch(6, 1);
}

void FrmSettings::ShowSerialDevices()
{
    // The ports this computer has now, so that an operator with a USB adapter sees its name.
    QStringList ports;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts()) {
        QString line = info.systemLocation();
        if (!info.description().isEmpty())
            line += QStringLiteral(" (") + info.description() + QStringLiteral(")");
        ports << line;
    }
    const QString list = ports.isEmpty() ? QStringLiteral("No serial ports were found on this computer.")
                                         : QStringLiteral("Serial ports on this computer:\n") + ports.join(u'\n');
    const QString how = QStringLiteral("To use another device for Com n, set BRANTOK_COMn to its path "
                                       "(for instance BRANTOK_COM1=/dev/ttyUSB0) before starting Brantok.");
    for (int i = 0; i < 4; ++i) {
        const SerialDevice d = ResolveSerialDevice(static_cast<int16_t>(i + 1));
        lblDevice[i]->setText(d.emulator ? QStringLiteral("built-in emulator") : d.path);
        lblDevice[i]->setToolTip(list + QStringLiteral("\n\n") + how);
        lblDevice[i]->setAccessibleDescription(QStringLiteral("Device used for Com %1").arg(i + 1));
    }
    fraComms->setToolTip(list);
}
