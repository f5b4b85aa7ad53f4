// dlgFiles and its side panel frmControls (see file_dialog.h).
#include "files/file_dialog.h"

#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "files/filechoice.h"
#include "nc/reader.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QVBoxLayout>

#include "core/frm_main.h"

namespace {

FileDialogScript gfnFileDialogScript;
FrmControls *gfrmControls = nullptr;

// The panel's size: as tall as the dialog's file list, narrow enough to leave it room.
constexpr int kPanelWidth = 250;
constexpr int kPanelHeight = 430;

// "Brantok files (*.brx)|*.brx|CNC Files (*.cnc)|*.cnc": the shown texts, in Qt's form.
QStringList NameFilters(const QString &strFilter)
{
    const QStringList parts = strFilter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters.append(parts[i]);
    return filters;
}

// The preview's guard against a file whose first line never ends (a disk image, a file of
// zeros): the reader would take the whole file in as one line. A first line longer than this
// is answered as the reader answers its first character, without reading the file.
constexpr qint64 kLongestFirstLine = 64 * 1024;   // bytes

// True with the answer in strAnswer when the file's first line is longer than the limit.
bool blnHeaderOfEndlessLine(const QString &strFile, QString &strAnswer)
{
    QFile f(strFile);
    if (!f.open(QIODevice::ReadOnly) || f.size() <= kLongestFirstLine)
        return false;
    const QByteArray head = f.read(kLongestFirstLine);
    if (head.size() < kLongestFirstLine || head.contains('\n') || head.contains('\r'))
        return false;
    const unsigned char c = static_cast<unsigned char>(head.at(0));
    strAnswer = c < ' ' || c > 'z' ? QStringLiteral("*** NOT A Brantok FILE ***") : QString();
    return true;
}

QWidget *MainWindowShown()
{
    return frmMainLoaded() && frmMain()->isVisible() ? frmMain() : nullptr;
}

} // namespace

QString SampleFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/Brantok Allsorts/Sample Brantok files");
}

void SetFileDialogScript(FileDialogScript fnScript) { gfnFileDialogScript = std::move(fnScript); }
const FileDialogScript &FileDialogScriptInForce() { return gfnFileDialogScript; }

// --- dlgFiles ---------------------------------------------------------------------------

FileDialog::FileDialog() = default;

FileDialog::~FileDialog()
{
    // The panel belongs to whoever loaded it, not to the dialog.
    if (m_dialog && panel && panel->parent() == m_dialog)
        panel->setParent(nullptr);
    delete m_dialog.data();
}

QString FileDialog::Folder() const { return QFileInfo(FileName).absolutePath(); }

void FileDialog::Close()
{
    if (m_dialog)
        m_dialog->reject();
}

bool FileDialog::Show()
{
    // Round again, in the chosen file's folder, after a path too long for the program or a
    // save over an existing file that the operator declines.
    for (;;) {
        QString strChosen;
        if (!ShowOnce(strChosen))
            return false;
        const QFileInfo fi(strChosen);
        InitDir = fi.absolutePath();
        FileName = fi.fileName();
        if (strChosen.size() > MaxFileSize) {
            StdMsgBox(QStringLiteral("The path of this file is longer than ") + QString::number(MaxFileSize) +
                          QStringLiteral(" characters and can't be used:") + QStringLiteral("\r\n") + strChosen,
                      vbExclamation, DialogTitle);
            continue;
        }
        if (blnSave && fi.exists()) {
            const int16_t intAnswer = intStdMsgBox(strChosen + QStringLiteral(" already exists.") + QStringLiteral("\r\n") +
                                                       QStringLiteral("Do you want to replace it?"),
                                                   vbYesNo + vbExclamation, DialogTitle);
            if (intAnswer != vbYes)
                continue;
        }
        FileName = strChosen;
        return true;
    }
}

bool FileDialog::ShowOnce(QString &strChosen)
{
    const QString strStart = QFileInfo(InitDir).isDir() ? InitDir : QDir::homePath();
    if (gfnFileDialogScript) {
        strChosen = gfnFileDialogScript(DialogTitle, strStart);
        if (!strChosen.isEmpty())
            strChosen = QFileInfo(strChosen).absoluteFilePath();
        return !strChosen.isEmpty();
    }
    auto *d = new QFileDialog(MainWindowShown());
    m_dialog = d;
    d->setObjectName(QStringLiteral("dlgFiles"));
    d->setOption(QFileDialog::DontUseNativeDialog, true);
    d->setOption(QFileDialog::DontConfirmOverwrite, true);   // our own prompt, after the dialog
    d->setWindowTitle(DialogTitle);
    d->setAcceptMode(blnSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    d->setFileMode(blnSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    const QStringList filters = NameFilters(Filter);
    d->setNameFilters(filters);
    if (FilterIndex >= 1 && FilterIndex <= filters.size())
        d->selectNameFilter(filters[FilterIndex - 1]);
    d->setDefaultSuffix(DefaultExt);
    d->setDirectory(strStart);
    if (!FileName.isEmpty())
        d->selectFile(FileName);
    if (auto *edit = d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
        edit->setMaxLength(MaxFileSize);
    if (panel) {
        if (auto *grid = qobject_cast<QGridLayout *>(d->layout())) {
            grid->addWidget(panel, 0, grid->columnCount(), grid->rowCount(), 1);
            panel->show();
        }
        // Room for the file list and the panel, within the screen.
        QSize size(900, kPanelHeight + 70);
        if (const QScreen *screen = d->screen())
            size = size.boundedTo(screen->availableGeometry().size() - QSize(40, 60));
        d->resize(size);
    }
    if (FileBrowse) {
        QObject::connect(d, &QFileDialog::currentChanged, d, [this](const QString &strFile) { FileBrowse(strFile); });
        // The start file's header is shown at once, before the operator moves.
        if (!FileName.isEmpty())
            FileBrowse(QDir(strStart).filePath(FileName));
    }
    const bool blnChosen = d->exec() == QDialog::Accepted && !d->selectedFiles().isEmpty();
    if (blnChosen)
        strChosen = QFileInfo(d->selectedFiles().constFirst()).absoluteFilePath();
    if (panel && panel->parent() == d)
        panel->setParent(nullptr);
    m_dialog = nullptr;
    d->deleteLater();
    return blnChosen;
}

// --- frmControls ------------------------------------------------------------------------

FrmControls *frmControls() { return FormInstance(gfrmControls); }
bool frmControlsLoaded() { return gfrmControls != nullptr; }

FrmControls::FrmControls()
{
    setObjectName(QStringLiteral("frmControls"));
    setFixedWidth(kPanelWidth);
    setMinimumHeight(kPanelHeight);
    picHeader = new QFrame(this);
    picHeader->setObjectName(QStringLiteral("picHeader"));
    lblMRU = new QLabel(QStringLiteral("Recently used Files"), picHeader);
    lblMRU->setObjectName(QStringLiteral("lblMRU"));
    cboMRU = new QComboBox(picHeader);
    cboMRU->setObjectName(QStringLiteral("cboMRU"));
    cboMRU->setPlaceholderText(QStringLiteral("Pick a recent file"));
    lblMRU->setBuddy(cboMRU);
    lblHeader = new QLabel(QStringLiteral("File Header"), picHeader);
    lblHeader->setObjectName(QStringLiteral("lblHeader"));
    rtbHeader = new QPlainTextEdit(picHeader);
    rtbHeader->setObjectName(QStringLiteral("rtbHeader"));
    rtbHeader->setReadOnly(true);
    lblHeader->setBuddy(rtbHeader);
    for (QLabel *l : {lblMRU, lblHeader}) {
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
    }
    auto *inner = new QVBoxLayout(picHeader);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->addWidget(lblMRU);
    inner->addWidget(cboMRU);
    inner->addSpacing(10);
    inner->addWidget(lblHeader);
    inner->addWidget(rtbHeader, 1);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(8, 0, 0, 0);
    outer->addWidget(picHeader);
    connect(cboMRU, &QComboBox::activated, this, [this](int i) { cboMRU_Click(i); });
}

void FrmControls::Form_Load() try {
    // The recent files by name; each item remembers its entry, whose path it stands for.
    cboMRU->clear();
    for (int i = 0; i < gintMRUCount && i < static_cast<int>(frmMain()->mnuMMru.size()); ++i) {
        const QString strTag = frmMain()->mnuMMru[static_cast<size_t>(i)]->data().toString();
        cboMRU->addItem(QFileInfo(strTag).fileName(), i);
        cboMRU->setItemData(i, strTag, Qt::ToolTipRole);
    }
    cboMRU->setCurrentIndex(-1);
} catch (...) {
    LogError("frmControls", "Form_Load");
}

void FrmControls::cboMRU_Click(int intListIndex) try {
    if (intListIndex < 0)
        return;
    const int intEntry = cboMRU->itemData(intListIndex).toInt();
    Tag = frmMain()->mnuMMru.at(static_cast<size_t>(intEntry))->data().toString();
    // The dialog closes as a cancel; the caller finds the path in the Tag and shows the
    // dialog again in that file's folder.
    if (dlgFiles)
        dlgFiles->Close();
} catch (...) {
    LogError("frmControls", "cboMRU_Click");
}

void dlgFiles_FileBrowse(const QString &strFile) try {
    // A folder, a missing file or a device (which could be read for ever) changes nothing.
    if (!blnStdFileExists(strFile) || !QFileInfo(strFile).isFile())
        return;
    QString strAnswer;
    gstrHeader = blnHeaderOfEndlessLine(strFile, strAnswer) ? strAnswer : strHeader(strFile);
    if (frmControlsLoaded())
        frmControls()->rtbHeader->setPlainText(QString(gstrHeader).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
} catch (...) {
    LogError("frmControls", "dlgFiles_FileBrowse");
}
