// frmCopy, the form shown while an imported file is copied, and the copy itself.
// mnuTimport_Click (files/filechoice.h) is the way in.
#pragma once

#include "platform/forms.h"

#include <QString>
#include <QWidget>

class QLabel;

class FrmCopy : public QWidget, public Form {
    Q_OBJECT
public:
    FrmCopy();
    void Form_Load() override;     // the busy pointer
    void Form_Unload() override;   // the default pointer back
    // Centres and draws the form, copies lblFrom's file to lblTo's, and unloads the form.
    // A copy that fails ends in the error trap's report.
    void Form_Activate();

    QLabel *imgCopy = nullptr;
    QLabel *lblCopy = nullptr;
    QLabel *lblFrom = nullptr;   // the source path
    QLabel *lblTo = nullptr;     // the target path

private:
    bool m_blnCursor = false;
};

FrmCopy *frmCopy();

// Copies strFrom to strTo through a temporary file in the target's folder, renamed over
// the target once all is written. Faults: 53 no source, 70 unreadable source, 75 no
// temporary file in the target folder, 61 disk full, 57 any other read or write failure;
// the target is then as it was.
void CopyFileAtomic(const QString &strFrom, const QString &strTo);

// Tests: the next copies fail with "Device I/O error" once this many bytes are written
// (a stick pulled half-way); -1 puts the normal copy back.
void SetCopyFaultAfter(qint64 lngBytes);
