// Tools > Import File: a file from a stick (or anywhere) into the working folder.
//
// The operator picks the file in the open dialog (with the side panel), then its new name
// and place in the save dialog; frmCopy stands on the screen while the copy runs. The copy
// goes to a temporary file in the target folder and is renamed over the target only when
// every byte is written, so a stick pulled half-way or a full disk never leaves half a
// file under the target's name. A copy that fails ends in the error trap's report.
#include "files/import.h"

#include "core/artwork.h"
#include "core/frm_main.h"
#include "core/logger.h"
#include "core/store.h"
#include "core/vb.h"
#include "files/file_dialog.h"
#include "files/file_open.h"
#include "files/filechoice.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

namespace {

FrmCopy *gfrmCopy = nullptr;
qint64 glngCopyFaultAfter = -1;   // tests: the copy fails once this many bytes are written

constexpr qint64 kCopyChunk = 64 * 1024;   // bytes read and written at a time

// The copy picture: two sheets and an arrow from one to the other, drawn for the size asked.
QPixmap CopyPicture(int intSize)
{
    const qreal dpr = qApp->devicePixelRatio();
    QPixmap pm(QSize(intSize, intSize) * dpr);
    pm.setDevicePixelRatio(dpr);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = intSize / 48.0;
    auto sheet = [&](qreal x, qreal y, const QColor &fill) {
        QPainterPath path;
        path.moveTo(x, y);
        path.lineTo(x + 14 * s, y);
        path.lineTo(x + 20 * s, y + 6 * s);
        path.lineTo(x + 20 * s, y + 26 * s);
        path.lineTo(x, y + 26 * s);
        path.closeSubpath();
        p.setPen(QPen(QColor(0x33, 0x41, 0x55), 1.5 * s));
        p.setBrush(fill);
        p.drawPath(path);
        for (int i = 0; i < 3; ++i)
            p.drawLine(QPointF(x + 4 * s, y + (12 + 5 * i) * s), QPointF(x + 16 * s, y + (12 + 5 * i) * s));
    };
    sheet(2 * s, 4 * s, QColor(0xe2, 0xe8, 0xf0));
    sheet(26 * s, 18 * s, QColor(0xff, 0xff, 0xff));
    p.setPen(QPen(QColor(0x1d, 0x4e, 0xd8), 2.5 * s, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawLine(QPointF(14 * s, 36 * s), QPointF(23 * s, 36 * s));
    p.drawPolyline(QPolygonF({QPointF(19 * s, 32 * s), QPointF(23 * s, 36 * s), QPointF(19 * s, 40 * s)}));
    return pm;
}

// The removable-media folder of this user, or the home folder when there is none.
QString DefaultImportFolder()
{
    const QString strUser = qEnvironmentVariable("USER");
    for (const QString &base : {QStringLiteral("/media/"), QStringLiteral("/run/media/")})
        if (!strUser.isEmpty() && QFileInfo(base + strUser).isDir())
            return base + strUser;
    return QDir::homePath();
}

// The fault of a file that went wrong: a full disk is "Disk full", anything else at the
// device "Device I/O error".
[[noreturn]] void FileFault(const QFileDevice &f)
{
    vb::Err(f.error() == QFileDevice::ResourceError ? 61 : 57);
}

} // namespace

void SetCopyFaultAfter(qint64 lngBytes) { glngCopyFaultAfter = lngBytes; }

void CopyFileAtomic(const QString &strFrom, const QString &strTo)
{
    QFile in(strFrom);
    if (!in.open(QIODevice::ReadOnly))
        vb::Err(in.exists() ? vb::kPermissionDenied : vb::kFileNotFound);
    QSaveFile out(strTo);   // a temporary file beside the target, renamed at commit
    if (!out.open(QIODevice::WriteOnly))
        vb::Err(vb::kPathFileAccess);
    qint64 lngDone = 0;
    for (;;) {
        const QByteArray bytes = in.read(kCopyChunk);
        if (bytes.isEmpty()) {
            if (in.error() != QFileDevice::NoError || !in.atEnd())
                FileFault(in);
            break;
        }
        if (out.write(bytes) != bytes.size())
            FileFault(out);
        lngDone += bytes.size();
        if (glngCopyFaultAfter >= 0 && lngDone >= glngCopyFaultAfter)
            vb::Err(57);
    }
    // Without commit the temporary file goes when `out` does and the target stays as it was.
    if (!out.commit())
        FileFault(out);
}

// --- frmCopy ----------------------------------------------------------------------------

FrmCopy *frmCopy() { return FormInstance(gfrmCopy); }

FrmCopy::FrmCopy()
{
    setObjectName(QStringLiteral("frmCopy"));
    setWindowTitle(QStringLiteral("Import File"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowModality(Qt::ApplicationModal);
    imgCopy = new QLabel(this);
    imgCopy->setObjectName(QStringLiteral("imgCopy"));
    imgCopy->setAccessibleName(QStringLiteral("Copying"));
    imgCopy->setPixmap(CopyPicture(48));
    lblCopy = new QLabel(QStringLiteral("Copying the file"), this);
    lblCopy->setObjectName(QStringLiteral("lblCopy"));
    QFont f = lblCopy->font();
    f.setBold(true);
    lblCopy->setFont(f);
    lblFrom = new QLabel(this);
    lblFrom->setObjectName(QStringLiteral("lblFrom"));
    lblTo = new QLabel(this);
    lblTo->setObjectName(QStringLiteral("lblTo"));
    auto *fromCaption = new QLabel(QStringLiteral("From:"), this);
    auto *toCaption = new QLabel(QStringLiteral("To:"), this);
    auto *grid = new QGridLayout(this);
    grid->addWidget(imgCopy, 0, 0, 3, 1, Qt::AlignTop);
    grid->addWidget(lblCopy, 0, 1, 1, 2);
    grid->addWidget(fromCaption, 1, 1);
    grid->addWidget(lblFrom, 1, 2);
    grid->addWidget(toCaption, 2, 1);
    grid->addWidget(lblTo, 2, 2);
    grid->setColumnStretch(2, 1);
    setMinimumWidth(420);
}

void FrmCopy::Form_Load()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_blnCursor = true;
}

void FrmCopy::Form_Unload()
{
    if (m_blnCursor)
        QApplication::restoreOverrideCursor();
    m_blnCursor = false;
}

void FrmCopy::Form_Activate() try {
    // Drawn before the copy blocks, so the operator sees what is being copied.
    adjustSize();
    CentreOverMain(this);
    repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    CopyFileAtomic(lblFrom->text(), lblTo->text());
    Unload(this);
} catch (...) {
    LogError("frmCopy", "Form_Activate");
}

// --- The menu entry ---------------------------------------------------------------------

void mnuTimport_Click() try {
    // 1 .. 5: the file to import, from the folder the last import came from.
    const QString strImportFolder = strRegistryValueGet(QStringLiteral("CNC File Import"), DefaultImportFolder());
    QString strSource;
    QString strFolder;
    if (!blnOpenWithPanel(QStringLiteral("Select file to import"),
                          kNcFilter + QStringLiteral("|All Files (*.*)|*.*"), strImportFolder, strSource, strFolder))
        return;
    RegistryValuePut(QStringLiteral("CNC File Import"), strFolder);
    const QString strBareName = QFileInfo(strSource).fileName();
    // 6, 7: its new name in the working folder; an existing name is asked about.
    FileDialog dlgFiles;
    dlgFiles.DialogTitle = QStringLiteral("Save NC File As");
    dlgFiles.DefaultExt = QStringLiteral("brx");
    dlgFiles.Filter = kNcFilter;
    dlgFiles.FilterIndex = 1;
    dlgFiles.InitDir = strRegistryValueGet(QStringLiteral("CNC File Path"), QCoreApplication::applicationDirPath());
    dlgFiles.FileName = strBareName;
    dlgFiles.MaxFileSize = 200;
    dlgFiles.blnSave = true;
    if (!dlgFiles.Show())
        return;
    // 8. The copy, with frmCopy on the screen while it runs.
    RegistryValuePut(QStringLiteral("CNC File Path"), dlgFiles.Folder());
    FrmCopy *copy = frmCopy();
    copy->lblFrom->setText(strSource);
    copy->lblTo->setText(dlgFiles.FileName);
    copy->show();
    copy->Form_Activate();
} catch (...) {
    LogError("frmMain", "mnuTimport_Click");
}
