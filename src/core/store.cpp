#include "core/store.h"

#include "core/logger.h"

#include <QDir>
#include <QSettings>
#include <QStringList>

namespace {
// The read buffer holds 80 characters with the terminator.
constexpr int kReadLimit = 79;
} // namespace

QString StorePath()
{
    QString env = qEnvironmentVariable("BRANTOK_STORE");
    if (!env.isEmpty())
        return env;
    return QDir::homePath() + QStringLiteral("/.config/Ostrane/Brantok.conf");
}

QString strRegistryValueGet(const QString &strValueName, const QString &strDefault) try {
    QSettings store(StorePath(), QSettings::IniFormat);
    if (store.status() != QSettings::NoError)
        return strDefault;
    QVariant v = store.value(strValueName);
    if (!v.isValid())
        return strDefault;
    // A hand-written value with a comma comes back as a list.
    QString text = v.typeId() == QMetaType::QStringList ? v.toStringList().join(QStringLiteral(", ")) : v.toString();
    if (text.size() > kReadLimit)
        return strDefault;
    qsizetype nul = text.indexOf(QChar(0));
    if (nul >= 0)
        text.truncate(nul);
    return text;
} catch (...) {
    LogError("F1Mill", "strRegistryValueGet");
}

void RegistryValuePut(const QString &strValueName, const QString &strValue) try {
    QSettings store(StorePath(), QSettings::IniFormat);
    store.setValue(strValueName, strValue);
    store.sync();   // a failed write shows only in status(), and is not reported
} catch (...) {
    LogError("F1Mill", "RegistryValuePut");
}
