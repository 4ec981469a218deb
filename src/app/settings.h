#pragma once

#include "app/appstate.h"
#include "app/cregsettings.h"

#include <QList>
#include <optional>

// The settings key of the program.
inline const QString RegistryKeyPathText = QStringLiteral("Software\\Norvale Systems");

// The dealer's installation drive when none is known: "C:" on Windows; elsewhere the place
// where a Windows drive is usually mounted.
QString DefaultDrive();
// The maker's update server.
QString DefaultServerHost();

// Assigns the stored values by their exact names; unknown names are ignored.
void AssignStoredSettings(AppSettings& settings, const QList<RegValue>& values);
// Applies the start-up defaults, in their order.
void ApplySettingDefaults(AppSettings& settings);

// The panes as the user left them, in twips, for saving the layout.
struct PaneLayout {
    double firstPaneWidth = 0;
    double thirdPaneTop = 0;
    double innerWidth = 0;
    double innerHeight = 0;
};

// The drive to store: the data directory's first two characters on Windows, its parent
// directory elsewhere.
QString DriveOfDataPath(const QString& dataPath);

// Writes the eight values back in their order. The layout is used when Format is 1.
void SaveSettings(const CRegSettings& store, const AppState& state,
                  const std::optional<PaneLayout>& layout);
