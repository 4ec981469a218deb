#include "app/settings.h"

#include "tempinstall.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

const QString Key = RegistryKeyPathText;

AppSettings readBack(const CRegSettings& store) {
    AppSettings settings;
    AssignStoredSettings(settings, store.EnumValues(Key, 0));
    ApplySettingDefaults(settings);
    return settings;
}

} // namespace

// Values are read by their exact names, with comma decimals; what is missing takes its default.
TEST(Settings, StoredValuesAreReadByExactNameWithCommaDecimals) {
    TempInstall install;
    const QList<RegValue> none = CRegSettings(install.settingsFile()).EnumValues(Key, 0);
    ASSERT_EQ(none.size(), 1);
    EXPECT_TRUE(none[0].name.isEmpty() && none[0].data.isEmpty());
    EXPECT_EQ(readBack(CRegSettings(install.settingsFile())).IP, DefaultServerHost());

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\n"
                                          "Width=0,6\nHeight=\"0,45\"\nNation=999\n"
                                          "Port=2101\nIP=10.0.0.5\nnation=2000\nColour=red\n"
                                          "Format=1\nDrive=/srv/dealer\n");
    const AppSettings s = readBack(CRegSettings(install.settingsFile()));
    EXPECT_FLOAT_EQ(s.Width, 0.6f);
    EXPECT_FLOAT_EQ(s.Height, 0.45f);
    EXPECT_EQ(s.Nation, 1000) << "999 is raised to French; 'nation' is another name";
    EXPECT_EQ(std::tie(s.Port, s.IP, s.Format, s.Selection, s.Drive),
              std::tuple(2101, "10.0.0.5", 1, 0, "/srv/dealer"));

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\nNation=2000\n");
    const AppSettings english = readBack(CRegSettings(install.settingsFile()));
    EXPECT_EQ(english.Nation, 2000);
    EXPECT_EQ(english.Port, 2001);
    EXPECT_EQ(english.Drive, DefaultDrive());
}

// Every value goes back with point decimals, the drive of the data directory, and the stored
// pane fractions unless the layout is to be kept (Format 1).
TEST(Settings, SaveWritesEveryValueBackWithPointDecimalsAndTheDataDrive) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = Key;
    state.Settings = {"/old", 0, 0.45f, 2, "host", 2000, 1, 0.6f, 2101};
    state.DataPath = "/mnt/dealer/NVNV/";
    SaveSettings(store, state, PaneLayout{5000, 3000, 10000, 8000});

    EXPECT_EQ(store.QueryValue(Key, "Width"), "0.6");
    EXPECT_EQ(store.QueryValue(Key, "Height"), "0.45");
    EXPECT_EQ(store.QueryValue(Key, "Drive"), "/mnt/dealer");
    const AppSettings& s = state.Settings;
    const AppSettings back = readBack(store);
    EXPECT_EQ(std::tie(back.Nation, back.Instal, back.Selection, back.Format, back.IP, back.Port),
              std::tie(s.Nation, s.Instal, s.Selection, s.Format, s.IP, s.Port));
    EXPECT_EQ(store.EnumValues(Key).size(), 9);

    state.Settings.Format = 1;
    SaveSettings(store, state, PaneLayout{5000, 3000, 10000, 8000});
    EXPECT_EQ(store.QueryValue(Key, "Width"), "0.504");
    EXPECT_EQ(store.QueryValue(Key, "Height"), "0.37");
}

TEST(Settings, RegistryOperationsOnTheirOwnKey) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    EXPECT_EQ(store.QueryValue(Key, "Nothing", 0, "dflt"), "dflt");
    EXPECT_TRUE(store.SetValue(Key, "*", "default value"));
    EXPECT_TRUE(store.SetValue(Key, "IP", "a"));
    EXPECT_EQ(store.QueryValue(Key, "*"), "default value");
    EXPECT_TRUE(store.SetValue(Key, "Drive", QString()));
    EXPECT_EQ(store.QueryValue(Key, "Drive", 0, "dflt"), QString())
        << "a value that exists answers its text, even an empty one";
    EXPECT_TRUE(store.DeleteValue(Key, "IP"));
    EXPECT_FALSE(store.DeleteValue(Key, "IP"));
    EXPECT_TRUE(store.DeleteValue(Key, QString()));
    EXPECT_EQ(store.EnumValues(Key).size(), 1);
}
