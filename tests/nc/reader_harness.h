// A stage for the reader: NC files in a temporary folder, a known tool table and settings,
// and a correction window that records what it was asked to show and answers as told.
#pragma once

#include "core/hooks.h"
#include "nc_test_support.h"

#include <QStringList>

#include <ostream>

// Texts in test failures, with CR and LF made visible.
inline void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << QString(s).replace(u'\r', QStringLiteral("\\r")).replace(u'\n', QStringLiteral("\\n")).toStdString() << '"';
}

struct ShownCorrection {
    QString file;
    QString errorText;    // what txtError would show
    QString faultyLine;   // what is marked red
};

class ReaderHarness {
public:
    ReaderHarness();    // rapid 500 mm/min, not a WoodWorker, tools 1, 2, 3 and 7
    ~ReaderHarness();   // console hooks and shared state back

    // (Re)installs the recording hooks; a TrapRecorder going out of scope removes them.
    void install();
    // Writes the bytes to a file of the temporary folder and returns its path.
    QString write(const QString &name, const QByteArray &bytes);
    // "%" and the lines, each ended CR LF.
    static QByteArray program(const QStringList &lines);

    std::vector<ShownCorrection> corrections;
    QStringList busy;   // "start Reading CNC file", "stop"
    // The correction window's answer; may rewrite the file first. Default: "Cancel".
    std::function<QString(const ShownCorrection &)> answer;

private:
    QTemporaryDir m_dir;
};

// The tool numbers of gintUsedTools, in order.
QList<int> UsedTools();
