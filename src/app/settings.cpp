#include "app/settings.h"

#include "app/utilities.h"

#include <QDir>
#include <array>
#include <cmath>
#include <type_traits>
#include <variant>

QString DefaultDrive() {
#ifdef Q_OS_WIN
    return QStringLiteral("C:");
#else
    return QStringLiteral("/mnt/c");
#endif
}

QString DefaultServerHost() {
    return QStringLiteral("maj.norvale.example");
}

namespace {

// A stored number as the program's 16-bit integers take it: rounded half to even, and 0 when
// the text is no number or does not fit.
qint16 toInt16(const QString& text) {
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return 0;
    const double rounded = std::nearbyint(value);
    if (rounded < -32768 || rounded > 32767)
        return 0;
    return static_cast<qint16>(rounded);
}

// Fractions may have been written under a locale with a decimal comma.
float toFraction(const QString& text) {
    bool ok = false;
    const float value = DotDecimal(text).trimmed().toFloat(&ok);
    return ok && std::isfinite(value) ? value : 0.0f;
}

template <typename T> T fromText(const QString& text) {
    if constexpr (std::is_same_v<T, qint16>)
        return toInt16(text);
    else if constexpr (std::is_same_v<T, float>)
        return toFraction(text);
    else
        return text;
}

QString toText(const QString& value) {
    return value;
}
QString toText(qint16 value) {
    return QString::number(value);
}
QString toText(float value) {
    return DotDecimal(QString::number(value, 'g', 7));
}

template <typename T> bool isUnset(const T& value) {
    if constexpr (std::is_same_v<T, QString>)
        return value.isEmpty();
    else
        return value == 0;
}

enum class DefaultWhen { Never, Unset, Below };

struct StoredSetting {
    QString name;
    std::variant<QString AppSettings::*, qint16 AppSettings::*, float AppSettings::*> field;
    QString defaultText; // read as a stored value would be
    DefaultWhen when = DefaultWhen::Never;
};

// The values of the settings key, in the order they are written.
const std::array<StoredSetting, 9>& storedSettings() {
    static const std::array<StoredSetting, 9> table = {{
        {QStringLiteral("Nation"), &AppSettings::Nation, QStringLiteral("1000"),
         DefaultWhen::Below},
        {QStringLiteral("Drive"), &AppSettings::Drive, DefaultDrive(), DefaultWhen::Unset},
        {QStringLiteral("Selection"), &AppSettings::Selection, {}, DefaultWhen::Never},
        {QStringLiteral("Format"), &AppSettings::Format, {}, DefaultWhen::Never},
        {QStringLiteral("Width"), &AppSettings::Width, QStringLiteral("0.56"), DefaultWhen::Unset},
        {QStringLiteral("Height"), &AppSettings::Height, QStringLiteral("0.37"),
         DefaultWhen::Unset},
        {QStringLiteral("Instal"), &AppSettings::Instal, {}, DefaultWhen::Never},
        {QStringLiteral("IP"), &AppSettings::IP, DefaultServerHost(), DefaultWhen::Unset},
        {QStringLiteral("Port"), &AppSettings::Port, QStringLiteral("2001"), DefaultWhen::Unset},
    }};
    return table;
}

void assign(AppSettings& settings, const StoredSetting& setting, const QString& text) {
    std::visit(
        [&](auto member) {
            using T = std::remove_reference_t<decltype(settings.*member)>;
            settings.*member = fromText<T>(text);
        },
        setting.field);
}

QString textOf(const AppSettings& settings, const StoredSetting& setting) {
    return std::visit([&](auto member) { return toText(settings.*member); }, setting.field);
}

void applyDefault(AppSettings& settings, const StoredSetting& setting) {
    std::visit(
        [&](auto member) {
            using T = std::remove_reference_t<decltype(settings.*member)>;
            const T fallback = fromText<T>(setting.defaultText);
            const T& value = settings.*member;
            if ((setting.when == DefaultWhen::Unset && isUnset(value)) ||
                (setting.when == DefaultWhen::Below && value < fallback))
                settings.*member = fallback;
        },
        setting.field);
}

} // namespace

void AssignStoredSettings(AppSettings& settings, const QList<RegValue>& values) {
    for (const RegValue& value : values) {
        for (const StoredSetting& setting : storedSettings()) {
            if (value.name == setting.name)
                assign(settings, setting, value.data);
        }
    }
}

void ApplySettingDefaults(AppSettings& settings) {
    for (const StoredSetting& setting : storedSettings())
        applyDefault(settings, setting);
}

QString DriveOfDataPath(const QString& dataPath) {
#ifdef Q_OS_WIN
    return dataPath.left(2);
#else
    QString path = QDir::cleanPath(dataPath);
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.left(slash) : QStringLiteral("/");
#endif
}

void SaveSettings(const CRegSettings& store, const AppState& state,
                  const std::optional<PaneLayout>& layout) {
    AppSettings saved = state.Settings;
    // A working directory changed in the options dialog becomes the drive of the next start.
    saved.Drive = DriveOfDataPath(state.DataPath);
    const std::optional<LayoutFractions> fractions =
        saved.Format == 1 && layout ? FractionsOf(*layout) : std::nullopt;
    if (fractions) {
        saved.Width = float(fractions->width);
        saved.Height = float(fractions->height);
    }
    for (const StoredSetting& setting : storedSettings())
        store.SetValue(state.RegistryKeyPath, setting.name, textOf(saved, setting));
}
