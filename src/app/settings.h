#pragma once

#include "app/appstate.h"
#include "app/cregsettings.h"
#include "app/panelayout.h"

#include <QList>
#include <optional>

// The settings key of the program.
inline const QString RegistryKeyPathText = QStringLiteral("Software\\Norvale Systems");

// The dealer's installation drive when none is known: "C:" on Windows; elsewhere the place
// where a Windows drive is usually mounted.
QString DefaultDrive();
// The maker's update server.
QString DefaultServerHost();

// The nine values of the settings key are one table (name, field, default) that reading and
// writing share: every value is stored as text, numbers in plain decimal, fractions with a
// point.

// Assigns the stored values by their exact names; unknown names are ignored.
void AssignStoredSettings(AppSettings& settings, const QList<RegValue>& values);
// Gives the values that are unset (empty or 0; Nation below French) their defaults.
void ApplySettingDefaults(AppSettings& settings);

// The drive to store: the data directory's first two characters on Windows, its parent
// directory elsewhere.
QString DriveOfDataPath(const QString& dataPath);

// Writes the values back in their order. When Format is 1 the fractions are taken from the
// layout, so that the next start puts the panes back where they stand.
void SaveSettings(const CRegSettings& store, const AppState& state,
                  const std::optional<PaneLayout>& layout);
