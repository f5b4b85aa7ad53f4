// Test doubles shared by every test program.
#pragma once

#include "core/hooks.h"
#include "core/logger.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

// A message box that answers from a queue and records every box shown.
// With the queue empty it answers the box's first button.
struct ShownBox {
    QString text;
    int32_t flags = 0;
    QString title;
};

class ScriptedBoxes {
public:
    ScriptedBoxes();    // installs itself as the message-box hook
    ~ScriptedBoxes();   // puts the console hook back
    void answer(int16_t button) { m_answers.push_back(button); }
    const std::vector<ShownBox> &shown() const { return m_shown; }
    const ShownBox &last() const { return m_shown.back(); }
    void clear() { m_shown.clear(); }

private:
    std::deque<int16_t> m_answers;
    std::vector<ShownBox> m_shown;
};

// Catches the error trap: the report is recorded and the trapped procedure unwinds with
// TrapEnded instead of ending the test program.
class TrapRecorder {
public:
    TrapRecorder();
    ~TrapRecorder();
    bool fired() const { return !m_reports.empty(); }
    const QString &report() const { return m_reports.back(); }
    const QString &title() const { return m_titles.back(); }
    int count() const { return static_cast<int>(m_reports.size()); }

private:
    std::unique_ptr<ScriptedBoxes> m_boxes;
    QStringList m_reports;
    QStringList m_titles;
};

// A settings store of its own in a temporary folder, through $BRANTOK_STORE.
class TempStore {
public:
    TempStore();
    ~TempStore();
    QString path() const { return m_path; }
    QString dir() const { return m_dir.path(); }
    // Writes the file as text (hand-written store).
    void writeRaw(const QByteArray &ini);
    QByteArray readRaw() const;

private:
    QTemporaryDir m_dir;
    QString m_path;
    QByteArray m_oldEnv;
    bool m_hadEnv = false;
};

// Writes the bytes to the file, replacing it, and gives back its path; reads a file whole
// (empty when it can't be read).
QString WriteFile(const QString &path, const QByteArray &bytes);
QByteArray ReadFileBytes(const QString &path);

// Lets events run until `done` holds, for `ms` of real time at most; whether it held.
bool PumpUntil(const std::function<bool()> &done, int ms = 5000);

// Runs `f`, which must end in the trap; the report it gave (empty when it did not).
QString TrapReport(const std::function<void()> &f);

// The expected trap report of a fault, for comparisons.
QString ExpectedTrap(const char *module, const char *procedure, int number, const QString &description);

// Runs build/brantok-nc with its own store; what it printed and how it ended.
struct NcToolRun {
    int exitCode = -1;   // -1: it crashed or did not finish
    QString out;
    QString err;
};
NcToolRun RunBrantokNc(const QStringList &args, const QString &storePath);

// Puts a file of packed tool records, one a line, into the store in force as Tool01.. and
// ToolCount. Returns the number of tools, or -1 when the file can't be read.
int StoreToolsFile(const QString &path);
