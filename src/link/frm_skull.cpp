#include "link/frm_skull.h"

#include "link/link_screen.h"
#include "platform/qt_serial_port.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QPointer<QWidget> g_mainWindow;

// The alarm picture: a white skull on red, drawn here rather than loaded.
QPixmap SkullPicture()
{
    QPixmap pm(48, 48);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(QColor(190, 20, 20));
    p.setPen(Qt::NoPen);
    p.drawEllipse(0, 0, 48, 48);
    p.setBrush(Qt::white);
    p.drawEllipse(12, 8, 24, 22);      // cranium
    p.drawRect(17, 26, 14, 10);        // jaw
    p.setBrush(QColor(190, 20, 20));
    p.drawEllipse(16, 15, 6, 7);       // eyes
    p.drawEllipse(26, 15, 6, 7);
    p.drawRect(21, 31, 2, 5);          // teeth
    p.drawRect(25, 31, 2, 5);
    return pm;
}

} // namespace

FrmSkull::FrmSkull(QWidget *owner) : QDialog(owner)
{
    setWindowTitle(QStringLiteral("Brantok Hardware Configuration"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    if (owner)
        setWindowIcon(owner->windowIcon());

    imgSkull = new QLabel(this);
    imgSkull->setPixmap(SkullPicture());
    imgSkull->setAccessibleName(QStringLiteral("Hardware alarm"));
    lblSkull = new QLabel(QString(frmSkull.lblSkull).replace(QStringLiteral("\r\n"), QStringLiteral("\n")), this);
    lblSkull->setWordWrap(false);
    chkOffline = new QCheckBox(QStringLiteral("Work Offline"), this);
    chkOffline->setChecked(frmSkull.chkOffline);
    cmdOk = new QPushButton(frmSkull.cmdOkCaption, this);
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setVisible(frmSkull.cmdCancelVisible);

    auto *top = new QHBoxLayout;
    top->addWidget(imgSkull, 0, Qt::AlignTop);
    top->addWidget(lblSkull, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(chkOffline);
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOk, &QPushButton::clicked, this, &FrmSkull::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmSkull::cmdCancel_Click);

    adjustSize();
    if (owner) {
        QRect r = owner->frameGeometry();
        move(r.center() - rect().center());
    }
}

void FrmSkull::cmdOk_Click()
{
    frmSkull.chkOffline = chkOffline->isChecked();
    frmSkull_cmdOk_Click();
    accept();
}

void FrmSkull::cmdCancel_Click()
{
    frmSkull.chkOffline = chkOffline->isChecked();
    frmSkull_cmdCancel_Click();
    accept();
}

void InstallLinkUi(QWidget *mainWindow)
{
    g_mainWindow = mainWindow;
    InstallSerialDevices();
    linkHooks().showSkull = [] {
        QWidget *owner = g_mainWindow ? g_mainWindow.data() : QApplication::activeWindow();
        FrmSkull dlg(owner);
        dlg.exec();
    };
}
