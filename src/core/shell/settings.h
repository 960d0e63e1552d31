// The store of the few values that outlive the process: an INI file in the user's configuration
// folder that creates itself. A store that can't be read or written stops nothing and tells
// nothing. No file stays open between calls.
#pragma once

#include <QString>
#include <QVariant>

class QSettings;

namespace veltrona {

/// The key that all values lie under.
inline constexpr QLatin1String settingsKey{"Software\\Morvane\\"};

inline constexpr int textValue = 1;
inline constexpr int numberValue = 4;

/// Stores `value`, a text or a 32-bit number according to `valueType`.
void saveSetting(const QString &keyName, const QString &valueName, const QVariant &value,
                 int valueType);

/// Sets `value` if there is a value of that name; otherwise it keeps what it held.
void loadSetting(const QString &keyName, const QString &valueName, QString &value);

/// Both work on an open key and give 0 for success. writeValue also gives 0 for a type that it
/// doesn't know, and writes nothing; readValue gives -1 for a value of another type.
int writeValue(QSettings &key, const QString &valueName, int valueType, const QVariant &value);
int readValue(QSettings &key, const QString &valueName, QString &value);

/// Where the store lies.
QString settingsFile();

} // namespace veltrona
