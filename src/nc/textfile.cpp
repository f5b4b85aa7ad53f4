#include "nc/textfile.h"

#include "core/vb.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {

// Bytes read from the disk at a time. Lines are cut from the buffer, so a line may be
// any length: a 100 000-character line simply takes two reads.
constexpr qsizetype kChunk = 64 * 1024;

} // namespace

TextLineInput::OpenResult TextLineInput::Open(const QString &strFile)
{
    Close();
    m_error.clear();
    QFileInfo fi(strFile);
    if (strFile.isEmpty() || !fi.exists()) {
        m_error = vb::faultDescription(vb::kFileNotFound);
        return OpenResult::Missing;
    }
    if (fi.isDir()) {
        m_error = vb::faultDescription(vb::kPathFileAccess);
        return OpenResult::NotReadable;
    }
    m_file.setFileName(strFile);
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = m_file.errorString();
        return OpenResult::NotReadable;
    }
    m_fileDone = false;
    return OpenResult::Ok;
}

bool TextLineInput::Fill()
{
    if (m_fileDone)
        return false;
    // Drop what was handed out once it is the bigger part, so the buffer stays near one
    // line plus one chunk however long the file is.
    if (m_pos > 0 && m_pos >= m_buffer.size() / 2) {
        m_buffer.remove(0, m_pos);
        m_pos = 0;
    }
    const qsizetype old = m_buffer.size();
    m_buffer.resize(old + kChunk);
    const qint64 got = m_file.read(m_buffer.data() + old, kChunk);
    if (got < 0) {
        m_buffer.resize(old);
        m_fileDone = true;
        vb::Err(57);   // "Device I/O error": the medium went away under the read
    }
    m_buffer.resize(old + static_cast<qsizetype>(got));
    if (got == 0)
        m_fileDone = true;
    return got > 0;
}

bool TextLineInput::AtEnd()
{
    while (m_pos >= m_buffer.size()) {
        if (m_fileDone)
            return true;
        Fill();
    }
    return false;
}

QString TextLineInput::LineInput()
{
    // `scan` counts from m_pos so that it survives Fill moving the buffer.
    qsizetype scan = 0;
    for (;;) {
        const char *d = m_buffer.constData();
        const qsizetype n = m_buffer.size();
        qsizetype i = m_pos + scan;
        while (i < n && d[i] != '\r' && d[i] != '\n')
            ++i;
        if (i < n) {
            // A CR as the last buffered byte: the next byte decides whether it is CR LF.
            if (d[i] == '\r' && i + 1 == n && !m_fileDone) {
                scan = i - m_pos;
                Fill();
                continue;
            }
            QString line = QString::fromLatin1(d + m_pos, i - m_pos);
            qsizetype next = i + 1;
            if (d[i] == '\r' && next < n && d[next] == '\n')
                ++next;
            m_pos = next;
            return line;
        }
        if (m_fileDone) {
            // The last line, without a line end.
            QString line = QString::fromLatin1(d + m_pos, n - m_pos);
            m_pos = n;
            return line;
        }
        scan = n - m_pos;
        Fill();
    }
}

void TextLineInput::Close()
{
    if (m_file.isOpen())
        m_file.close();
    m_buffer.clear();
    m_buffer.squeeze();
    m_pos = 0;
    m_fileDone = true;
}

bool blnTextFileLoad(const QString &strFile, QString &strText)
{
    strText.clear();
    QFileInfo fi(strFile);
    if (!fi.exists() || fi.isDir())
        return false;
    QFile file(strFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    strText = QString::fromLatin1(bytes);
    strText.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    strText.replace(u'\r', u'\n');
    return true;
}

bool blnTextFileSave(const QString &strFile, const QString &strText, QString &strError)
{
    QByteArray bytes;
    bytes.reserve(strText.size() + strText.size() / 16);
    const qsizetype n = strText.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = strText.at(i).unicode();
        if (c == u'\r') {
            if (i + 1 < n && strText.at(i + 1) == u'\n')
                ++i;
            bytes.append("\r\n", 2);
        } else if (c == u'\n' || c == 0x2029 || c == 0x2028) {
            bytes.append("\r\n", 2);
        } else {
            bytes.append(c < 256 ? static_cast<char>(c) : '?');
        }
    }
    QSaveFile file(strFile);
    if (!file.open(QIODevice::WriteOnly)) {
        strError = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size()) {
        strError = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        strError = file.errorString();
        return false;
    }
    strError.clear();
    return true;
}
