#include "app/settings.h"

#include "app/utilities.h"

#include <QDir>
#include <cmath>

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

float toFraction(const QString& text) {
    bool ok = false;
    const float value = DotDecimal(text).trimmed().toFloat(&ok);
    return ok && std::isfinite(value) ? value : 0.0f;
}

QString fractionText(double value) {
    return DotDecimal(QString::number(float(value), 'g', 7));
}

} // namespace

void AssignStoredSettings(AppSettings& settings, const QList<RegValue>& values) {
    for (const RegValue& value : values) {
        const QString& name = value.name;
        if (name == u"Drive")
            settings.Drive = value.data;
        else if (name == u"Format")
            settings.Format = toInt16(value.data);
        else if (name == u"Height")
            settings.Height = toFraction(value.data);
        else if (name == u"Instal")
            settings.Instal = toInt16(value.data);
        else if (name == u"IP")
            settings.IP = value.data;
        else if (name == u"Nation")
            settings.Nation = toInt16(value.data);
        else if (name == u"Selection")
            settings.Selection = toInt16(value.data);
        else if (name == u"Width")
            settings.Width = toFraction(value.data);
        else if (name == u"Port")
            settings.Port = toInt16(value.data);
    }
}

void ApplySettingDefaults(AppSettings& settings) {
    if (settings.Drive.isEmpty())
        settings.Drive = DefaultDrive();
    if (settings.Height == 0)
        settings.Height = 0.37f;
    if (settings.IP.isEmpty())
        settings.IP = DefaultServerHost();
    if (settings.Nation < 1000)
        settings.Nation = 1000;
    if (settings.Width == 0)
        settings.Width = 0.56f;
    if (settings.Port == 0)
        settings.Port = 2001;
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
    const AppSettings& s = state.Settings;
    const QString& key = state.RegistryKeyPath;
    store.SetValue(key, QStringLiteral("Nation"), QString::number(s.Nation));
    store.SetValue(key, QStringLiteral("Drive"), DriveOfDataPath(state.DataPath));
    store.SetValue(key, QStringLiteral("Selection"), QString::number(s.Selection));
    store.SetValue(key, QStringLiteral("Format"), QString::number(s.Format));
    if (s.Format == 1 && layout && layout->innerWidth > 0 && layout->innerHeight > 0) {
        store.SetValue(key, QStringLiteral("Width"),
                       fractionText((layout->firstPaneWidth + 40) / layout->innerWidth));
        store.SetValue(key, QStringLiteral("Height"),
                       fractionText((layout->thirdPaneTop - 40) / layout->innerHeight));
    } else {
        store.SetValue(key, QStringLiteral("Width"), fractionText(s.Width));
        store.SetValue(key, QStringLiteral("Height"), fractionText(s.Height));
    }
    store.SetValue(key, QStringLiteral("Instal"), QString::number(s.Instal));
    store.SetValue(key, QStringLiteral("IP"), s.IP);
    store.SetValue(key, QStringLiteral("Port"), QString::number(s.Port));
}
