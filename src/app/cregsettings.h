#pragma once

#include <QList>
#include <QString>

// One named string value of the settings key.
struct RegValue {
    QString name;
    QString data;
};

// The program's settings key: the machine's registry on Windows, an INI file in the user's
// configuration folder elsewhere. Each call opens and closes its own store, as the original
// registry calls did; value names and their text forms are the same on every system.
class CRegSettings {
public:
    // storeFile empty: the machine's own store; otherwise an INI file (tests, tools).
    explicit CRegSettings(QString storeFile = {});

    // Empty name: deletes the whole key; "*" names the key's default value.
    bool DeleteValue(const QString& keyPath, const QString& name) const;
    // Every value of the key in enumeration order; a missing or empty key gives one empty row.
    QList<RegValue> EnumValues(const QString& keyPath, int rootKey = 0) const;
    QString QueryValue(const QString& keyPath, const QString& name, int rootKey = 0,
                       const QString& defaultValue = {}) const;
    bool SetValue(const QString& keyPath, const QString& name, const QString& value) const;

    // Where the values live (the INI file, or the registry key on Windows).
    QString location() const;

private:
    QString storeFile_;
};
