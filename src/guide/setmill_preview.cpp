// Our own way from the set-up wizard to the toolpath preview: a button in the bottom right
// corner of the file header, shown once the file has been analysed. It only opens the
// Preview window over the wizard; the wizard's pages, buttons and flow are untouched.
#include "guide/setmill.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/main_panels.h"
#include "nc/analysed.h"
#include "preview/preview_window.h"

#include <QFile>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>

namespace {
// A child of frmMain's picHeader, made on first use; gone with the main window when it unloads.
QPointer<QPushButton> g_cmdSetPreview;
}

QPushButton *cmdSetPreview()
{
    PicHeader *h = frmMain()->picHeader;
    if (g_cmdSetPreview == nullptr || g_cmdSetPreview->parent() != h) {
        g_cmdSetPreview = new QPushButton(QStringLiteral("Preview ..."), h);
        g_cmdSetPreview->setObjectName(QStringLiteral("cmdSetPreview"));
        g_cmdSetPreview->setAccessibleDescription(
            QStringLiteral("The toolpath of the analysed file, drawn from its steps, with the machining time"));
        // Enter and Space stay with the wizard's navigation buttons.
        g_cmdSetPreview->setFocusPolicy(Qt::NoFocus);
        g_cmdSetPreview->adjustSize();
        g_cmdSetPreview->hide();
        QObject::connect(g_cmdSetPreview, &QPushButton::clicked, h, [] { cmdSetPreview_Click(); });
    }
    return g_cmdSetPreview;
}

void ShowSetMillPreview(bool blnAnalysed)
{
    QPushButton *b = cmdSetPreview();
    const bool blnShow = blnAnalysed && QFile::exists(gstrAnalysedFile);
    if (blnShow) {
        const QRect r = frmMain()->picHeader->rtbHeader->geometry();
        b->move(r.right() - b->width() - 5, r.bottom() - b->height() - 5);
        b->raise();
    }
    b->setVisible(blnShow);
}

void cmdSetPreview_Click() try {
    ShowPreview(gstrAnalysedFile);
} catch (...) {
    LogError("frmMain", "cmdSetPreview_Click");
}
