// The program's NC text files on disk: how their bytes become lines and how a corrected
// text goes back.
//
// The files are ANSI text. Every byte is taken as one character of Latin-1, so any byte,
// above 127 or a control byte alike, is read without loss and a file shown in the
// correction window goes back to disk byte for byte where the operator changed nothing.
// A line ends at CR LF, at LF alone or at CR alone: files from other systems read with
// the same line numbers that an editor shows. Used by the reader (line by line, both the
// full read and the file chooser's quick look) and by the correction window (whole text).
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Reads a text file line by line, like the original's Open For Input / Line Input / EOF.
// One instance is one open file; the reader keeps its own at module level so that
// ReadError can close it.
class TextLineInput {
public:
    enum class OpenResult { Ok, Missing, NotReadable };

    // Opens the file for reading. A folder or a file that can't be read is NotReadable.
    OpenResult Open(const QString &strFile);
    bool IsOpen() const { return m_file.isOpen(); }
    // True when no further line can be read (EOF).
    bool AtEnd();
    // The next line without its line end. At the end it returns an empty line.
    // A read that fails at the device raises fault 57 "Device I/O error".
    QString LineInput();
    void Close();
    // Why the last Open failed, in the system's words.
    QString ErrorString() const { return m_error; }

private:
    // Makes sure at least one byte past m_pos is buffered unless the file is at its end.
    bool Fill();

    QFile m_file;
    QByteArray m_buffer;     // bytes read and not yet handed out, from m_pos on
    qsizetype m_pos = 0;
    bool m_fileDone = true;  // the file has no more bytes to give
    QString m_error;
};

// The whole file as one text for the correction window: Latin-1, every line end made "\n".
// False when the file can't be read (the text is then empty).
bool blnTextFileLoad(const QString &strFile, QString &strText);

// Writes `strText` over the file atomically (all of it or nothing): Latin-1, every line
// break written as CR LF as the program's files have them, whatever breaks the text holds
// ("\n", "\r\n", "\r", or an editor's paragraph separators). A last line without a break
// stays without one. A character outside Latin-1 is written
// as "?". On failure returns false with the reason in `strError`; the old file is untouched.
bool blnTextFileSave(const QString &strFile, const QString &strText, QString &strError);
