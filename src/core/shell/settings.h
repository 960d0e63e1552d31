// Persistent settings: an INI file in the user's configuration folder, created when needed.
// Failures to read or write are ignored. No file stays open between calls.
#pragma once

#include <QString>
#include <QVariant>

class QSettings;

namespace veltrona {

/// The key of all values.
inline constexpr QLatin1String settingsKey{"Software\\Morvane\\"};

inline constexpr int textValue = 1;
inline constexpr int numberValue = 4;

/// Stores `value`, a text or a 32-bit number according to `valueType`.
void saveSetting(const QString &keyName, const QString &valueName, const QVariant &value,
                 int valueType);

/// Sets `value` if there is a value of that name, else leaves it.
void loadSetting(const QString &keyName, const QString &valueName, QString &value);

/// Work on an open key and return 0 on success. writeValue also returns 0 for an unknown type, and
/// writes nothing; readValue returns -1 for a value of another type.
int writeValue(QSettings &key, const QString &valueName, int valueType, const QVariant &value);
int readValue(QSettings &key, const QString &valueName, QString &value);

/// Path of the INI file.
QString settingsFile();

} // namespace veltrona
