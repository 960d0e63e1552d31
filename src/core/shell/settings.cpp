#include "core/shell/settings.h"

#include "core/base/command.h"
#include "core/base/text.h"
#include "core/design/product.h"
#include "core/platform/services.h"

#include <QLockFile>
#include <QSettings>
#include <QStandardPaths>

namespace veltrona {

namespace {
constexpr int notFound = 2;
constexpr int accessDenied = 5;
constexpr int otherType = -1;

// Key names have backslashes between their levels, QSettings groups have slashes.
QString groupOf(const QString &keyName) {
    return keyName.split(QLatin1Char('\\'), Qt::SkipEmptyParts).join(QLatin1Char('/'));
}

/// Whether the lock that QSettings takes to write can be had. QSettings would wait for it without
/// an end: it removes a left-over lock only if that is of a dead process of this computer, or 30
/// seconds old. A command waits once.
bool canLock(const QSettings &key) {
    static long gaveUpIn = -1;
    const bool gaveUpBefore = gaveUpIn == CommandScope::running();
    QLockFile lock(key.fileName() + u".lock"_s);
    if (lock.tryLock(gaveUpBefore ? 0 : services().lockWait))
        return true;
    gaveUpIn = CommandScope::running();
    return false;
}
} // namespace

QString settingsFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/%1/%1.ini").arg(productName);
}

int writeValue(QSettings &key, const QString &valueName, int valueType, const QVariant &value) {
    if (valueType != textValue && valueType != numberValue)
        return 0;
    // Without write access QSettings would keep the value in memory and return it as if stored.
    if (!key.isWritable() || !canLock(key))
        return accessDenied;
    key.setValue(valueName,
                 valueType == textValue ? value.toString() : QString::number(value.toInt()));
    key.sync();
    return key.status() == QSettings::AccessError ? accessDenied : 0;
}

int readValue(QSettings &key, const QString &valueName, QString &value) {
    if (!key.contains(valueName))
        return notFound;
    const QVariant stored = key.value(valueName);
    if (stored.typeId() != QMetaType::QString)
        return otherType;
    value = stored.toString();
    return 0;
}

void saveSetting(const QString &keyName, const QString &valueName, const QVariant &value,
                 int valueType) {
    QSettings key(settingsFile(), QSettings::IniFormat);
    key.beginGroup(groupOf(keyName));
    writeValue(key, valueName, valueType, value);
}

void loadSetting(const QString &keyName, const QString &valueName, QString &value) {
    QSettings key(settingsFile(), QSettings::IniFormat);
    key.beginGroup(groupOf(keyName));
    readValue(key, valueName, value);
}

} // namespace veltrona
