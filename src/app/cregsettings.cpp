#include "app/cregsettings.h"

#include <QSettings>
#include <QStringList>
#include <memory>

namespace {

// The key's unnamed default value: the registry reaches it through Qt as "Default"; an INI file
// has no unnamed value, so it gets a name no program value can have.
#ifdef Q_OS_WIN
const QString DefaultValueName = QStringLiteral("Default");
#else
const QString DefaultValueName = QStringLiteral("(Default)");
#endif

QString valueName(const QString& name) {
    return name == u"*" ? DefaultValueName : name;
}

QString groupOf(const QString& keyPath) {
    QString group = keyPath;
    group.replace(u'\\', u'/');
    return group;
}

// A value written by hand as 0,56 comes back from an INI file as a list; it is one text.
QString textOf(const QVariant& value) {
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(u',');
    return value.toString();
}

} // namespace

CRegSettings::CRegSettings(QString storeFile) : storeFile_(std::move(storeFile)) {}

static std::unique_ptr<QSettings> openStore(const QString& storeFile, const QString& keyPath) {
    std::unique_ptr<QSettings> settings;
    if (!storeFile.isEmpty()) {
        settings = std::make_unique<QSettings>(storeFile, QSettings::IniFormat);
        settings->beginGroup(groupOf(keyPath));
    } else {
#ifdef Q_OS_WIN
        // The 32-bit view of the machine's registry: where the program has always kept its key,
        // also when it runs as a 64-bit program.
        settings = std::make_unique<QSettings>(QStringLiteral("HKEY_LOCAL_MACHINE\\") + keyPath,
                                               QSettings::Registry32Format);
#else
        settings = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                               QStringLiteral("Norvale Systems"),
                                               QStringLiteral("Mercantel"));
        settings->beginGroup(groupOf(keyPath));
#endif
    }
    return settings;
}

bool CRegSettings::DeleteValue(const QString& keyPath, const QString& name) const {
    auto settings = openStore(storeFile_, keyPath);
    if (name.isEmpty()) {
        settings->remove(QString());
    } else {
        if (!settings->contains(valueName(name)))
            return false;
        settings->remove(valueName(name));
    }
    settings->sync();
    return settings->status() == QSettings::NoError;
}

QList<RegValue> CRegSettings::EnumValues(const QString& keyPath, int) const {
    auto settings = openStore(storeFile_, keyPath);
    QList<RegValue> values;
    for (const QString& name : settings->childKeys())
        values.append(
            RegValue{name == DefaultValueName ? QString() : name, textOf(settings->value(name))});
    if (values.isEmpty())
        values.append(RegValue{});
    return values;
}

QString CRegSettings::QueryValue(const QString& keyPath, const QString& name, int,
                                 const QString& defaultValue) const {
    auto settings = openStore(storeFile_, keyPath);
    // A value that exists answers its text, even an empty one; only a missing value (or a key
    // that cannot be read) gives the default.
    if (!settings->contains(valueName(name)))
        return defaultValue;
    return textOf(settings->value(valueName(name)));
}

bool CRegSettings::SetValue(const QString& keyPath, const QString& name,
                            const QString& value) const {
    auto settings = openStore(storeFile_, keyPath);
    settings->setValue(valueName(name), value);
    settings->sync();
    return settings->status() == QSettings::NoError;
}

QString CRegSettings::location() const {
    return openStore(storeFile_, QStringLiteral("Software\\Norvale Systems"))->fileName();
}
