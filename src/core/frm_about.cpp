#include "core/frm_about.h"

#include "core/artwork.h"
#include "core/frm_splash.h"
#include "core/logger.h"

#include <QDesktopServices>
#include <QMouseEvent>
#include <QUrl>

namespace {
FrmAbout *g_frmAbout = nullptr;

class LinkLabel : public QLabel {
public:
    using QLabel::QLabel;
    std::function<void()> onClick;
protected:
    void mouseReleaseEvent(QMouseEvent *e) override
    {
        if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()) && onClick)
            onClick();
    }
    void keyReleaseEvent(QKeyEvent *e) override
    {
        if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter || e->key() == Qt::Key_Space) && onClick)
            onClick();
        else
            QLabel::keyReleaseEvent(e);
    }
};
} // namespace

FrmAbout *frmAbout() { return FormInstance(g_frmAbout); }
bool frmAboutLoaded() { return g_frmAbout != nullptr; }
QString SupportAddress() { return QStringLiteral("brantok@ostrane.example"); }

FrmAbout::FrmAbout()
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + AppTitle());
    setWindowIcon(AppIcon());
    setFixedSize(440, 280);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(0xfb, 0xfc, 0xfd));
    setPalette(pal);
    // Places in pixels, as the form was drawn (the welcome panel's place is given in twips).
    imgHead = new QLabel(this);
    imgHead->setObjectName(QStringLiteral("imgHead"));
    imgHead->setAccessibleName(AppTitle());
    imgHead->setPixmap(HeadArt(400, 76));
    imgHead->setGeometry(20, 6, 400, 76);
    lblVersion = new QLabel(this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setAccessibleDescription(QStringLiteral("Version"));
    lblVersion->setAlignment(Qt::AlignCenter);
    lblVersion->setGeometry(20, 96, 400, 22);
    lblDescription = new QLabel(QStringLiteral("The PC side of the Brantok step-motor control\n"
                                               "for the EMCO F1 milling machine."),
                                this);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->setAlignment(Qt::AlignCenter);
    lblDescription->setGeometry(20, 122, 400, 44);
    auto *email = new LinkLabel(this);
    lblEmail = email;
    lblEmail->setObjectName(QStringLiteral("lblEmail"));
    lblEmail->setAccessibleDescription(QStringLiteral("Mail the Brantok team"));
    lblEmail->setText(SupportAddress());
    lblEmail->setStyleSheet(QStringLiteral("color: #1d4ed8; text-decoration: underline;"));
    lblEmail->setCursor(Qt::PointingHandCursor);
    lblEmail->setFocusPolicy(Qt::StrongFocus);
    lblEmail->setAlignment(Qt::AlignCenter);
    lblEmail->setGeometry(20, 176, 400, 22);
    email->onClick = [this] { lblEmail_Click(); };
    cmdOk = new QPushButton(QStringLiteral("Ok"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdOk->setGeometry(330, 236, 90, 30);
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });

    picFirst = new QFrame(this);
    picFirst->setObjectName(QStringLiteral("picFirst"));
    picFirst->setAccessibleName(QStringLiteral("Welcome to Brantok"));
    picFirst->setStyleSheet(QStringLiteral("#picFirst { background: #ffffff; border: 1px solid #d5dbe1; "
                                           "border-left: 5px solid #e06c1c; border-radius: 6px; }"));
    picFirst->setGeometry(16, 85, 408, 132);
    lblFirst = new QLabel(picFirst);
    lblFirst->setObjectName(QStringLiteral("lblFirst"));
    lblFirst->setWordWrap(true);
    lblFirst->setTextFormat(Qt::RichText);
    lblFirst->setText(QStringLiteral("<p style='font-size:13pt'><b>Welcome to Brantok</b></p>"
                                     "<p>As this appears to be the first time of use, please click Ok and "
                                     "then review the Program Settings.</p>"));
    lblFirst->setGeometry(18, 10, 376, 112);
    lblFirst->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    picFirst->hide();
}

FrmAbout::~FrmAbout()
{
    if (g_frmAbout == this)
        g_frmAbout = nullptr;
}

void FrmAbout::Form_Load() try {
    lblVersion->setText(VersionText());
    CentreOverMain(this);
} catch (...) {
    LogError("frmAbout", "Form_Load");
}

void FrmAbout::cmdOk_Click() try {
    Unload(this);
} catch (...) {
    LogError("frmAbout", "cmdOk_Click");
}

void FrmAbout::lblEmail_Click() try {
    // The desktop's mail handler opens a new message to the address in the label.
    QDesktopServices::openUrl(QUrl(QStringLiteral("mailto:") + lblEmail->text()));
} catch (...) {
    LogError("frmAbout", "lblEmail_Click");
}

void FrmAbout::reject() { cmdOk_Click(); }
