#include "core/logger.h"

#include "core/hooks.h"
#include "core/msgbox.h"
#include "core/vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <new>

#ifdef BRANTOK_IN_DESIGN
static constexpr bool kInDesignBuild = true;
#else
static constexpr bool kInDesignBuild = false;
#endif

bool gblnInDesign = false;

void gblnVBInDesign()
{
    // The original asked the development environment; here it is a build switch.
    gblnInDesign = kInDesignBuild;
}

QString AppTitle() { return QStringLiteral("Brantok"); }

QString AppVersion()
{
    return QStringLiteral("%1.%2.%3").arg(BRANTOK_VERSION_MAJOR).arg(BRANTOK_VERSION_MINOR).arg(BRANTOK_VERSION_PATCH);
}

QString TrapTitle() { return AppTitle() + QStringLiteral(" ") + AppVersion(); }

QString TrapReport(const QString &strModule, const QString &strProcedure, int32_t lngNumber,
                   const QString &strDescription)
{
    const QString crlf = QStringLiteral("\r\n");
    QString error = lngNumber == 0 ? strDescription : QString::number(lngNumber) + QStringLiteral(" : ") + strDescription;
    return QStringLiteral("An error has occurred in ") + AppTitle() + crlf + crlf + QStringLiteral("Error:\t") + error +
           crlf + QStringLiteral("Location:\t") + strModule + QStringLiteral(" / ") + strProcedure + crlf;
}

void FaultOf(std::exception_ptr e, int32_t &number, QString &description)
{
    try {
        if (e)
            std::rethrow_exception(e);
        number = 0;
        description.clear();
    } catch (const vb::Fault &f) {
        number = f.number();
        description = f.description();
    } catch (const std::bad_alloc &) {
        number = vb::kOutOfMemory;
        description = vb::faultDescription(number);
    } catch (...) {
        number = vb::kInvalidCall;
        description = vb::faultDescription(number);
    }
}

namespace {

bool trapAlreadyEnded()
{
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const TrapEnded &) {
        return true;
    } catch (...) {
    }
    return false;
}

[[noreturn]] void endNow(int code)
{
    uiHooks().endProcess(code);
    std::_Exit(code);   // a hook that returned still ends here
}

} // namespace

void LogError(const char *strModule, const char *strProcedure)
{
    if (trapAlreadyEnded())
        throw;   // a test unwinding from the first report: no second report on the way out
    if (gblnInDesign)
        throw;   // the trap isn't armed: the fault goes on to the debugger
    int32_t number = 0;
    QString description;
    FaultOf(std::current_exception(), number, description);
    LogError(QString::fromLatin1(strModule), QString::fromLatin1(strProcedure), number, description);
}

void LogError(const QString &strModule, const QString &strProcedure, int32_t lngNumber, const QString &strDescription)
{
    // Every step runs on if the one before it failed: the report must get out.
    // There is no log file to close or copy: those steps have nothing to do.
    static bool reporting = false;   // a box that faults while reporting must not report again
    if (reporting)
        endNow(1);
    reporting = true;
    QString message;
    QString title;
    try {
        message = TrapReport(strModule, strProcedure, lngNumber, strDescription);
        title = TrapTitle();
    } catch (...) {
    }
    try {
        StdMsgBox(message, 16, title);
    } catch (const TrapEnded &) {
        reporting = false;   // only a test gets here, and it goes on
        throw;
    } catch (...) {
    }
    reporting = false;       // a test's ending hook returns by throwing
    endNow(1);
}

void ReportStartFault()
{
    if (trapAlreadyEnded())
        throw;
    int32_t number = 0;
    QString description;
    FaultOf(std::current_exception(), number, description);
    const QString crlf = QStringLiteral("\r\n");
    QString message = QStringLiteral("Cannot start ") + AppTitle() + crlf + crlf + QStringLiteral("Error:\t") +
                      QString::number(number) + QStringLiteral(" : ") + description + crlf +
                      QStringLiteral("Location:\tF1Mill / Main") + crlf;
    try {
        StdMsgBox(message, 16, TrapTitle());
    } catch (const TrapEnded &) {
        throw;
    } catch (...) {
    }
    endNow(1);
}

bool blnStdFileExists(const QString &strFile)
{
    if (strFile.endsWith(u'\\') || strFile.endsWith(u'/'))
        return false;
    QFileInfo fi(strFile);
    return fi.exists() && !fi.isDir();
}

bool blnRemovableMedia(const QString &strPath)
{
    QFileInfo fi(strPath);
    QString abs = fi.absoluteFilePath();
    // The nearest existing folder decides the device.
    while (!abs.isEmpty() && !QFileInfo::exists(abs))
        abs = QFileInfo(abs).absolutePath() == abs ? QString() : QFileInfo(abs).absolutePath();
    if (abs.isEmpty())
        return false;
    QStorageInfo storage(abs);
    if (!storage.isValid())
        return false;
    const QByteArray fs = storage.fileSystemType().toLower();
    if (fs == "iso9660" || fs == "udf")
        return true;   // optical
    // /dev/sdb1 -> /sys/block/sdb/removable
    QString dev = QString::fromLocal8Bit(storage.device());
    if (!dev.startsWith(QStringLiteral("/dev/")))
        return false;
    QString name = dev.mid(5);
    QString disk = name;
    while (!disk.isEmpty() && !QFileInfo::exists(QStringLiteral("/sys/block/") + disk))
        disk.chop(1);
    if (disk.isEmpty())
        return false;
    QFile removable(QStringLiteral("/sys/block/") + disk + QStringLiteral("/removable"));
    if (!removable.open(QIODevice::ReadOnly) || removable.readAll().trimmed() != "1")
        return false;
    // A large removable disk counts as fixed.
    return storage.bytesAvailable() / 1024 / 1024 < 5;
}
