#include "app/settings.h"

#include "tempinstall.h"

#include <gtest/gtest.h>

namespace {

const QString Key = RegistryKeyPathText;

AppSettings readBack(const CRegSettings& store) {
    AppSettings settings;
    AssignStoredSettings(settings, store.EnumValues(Key, 0));
    ApplySettingDefaults(settings);
    return settings;
}

} // namespace

TEST(Settings, AnEmptyKeyGivesEveryDefault) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    const QList<RegValue> values = store.EnumValues(Key, 0);
    ASSERT_EQ(values.size(), 1);
    EXPECT_TRUE(values[0].name.isEmpty() && values[0].data.isEmpty());

    const AppSettings s = readBack(store);
    EXPECT_EQ(s.Drive, DefaultDrive());
    EXPECT_EQ(s.Nation, 1000);
    EXPECT_FLOAT_EQ(s.Width, 0.56f);
    EXPECT_FLOAT_EQ(s.Height, 0.37f);
    EXPECT_EQ(s.Port, 2001);
    EXPECT_EQ(s.IP, DefaultServerHost());
    EXPECT_EQ(s.Format, 0);
    EXPECT_EQ(s.Selection, 0);
}

TEST(Settings, StoredValuesAreReadByExactNameWithCommaDecimals) {
    TempInstall install;
    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\n"
                                          "Width=0,6\nHeight=\"0,45\"\nNation=999\n"
                                          "Port=2101\nIP=10.0.0.5\nnation=2000\nColour=red\n"
                                          "Format=1\nSelection=1\nDrive=/srv/dealer\n");
    const AppSettings s = readBack(CRegSettings(install.settingsFile()));
    EXPECT_FLOAT_EQ(s.Width, 0.6f);
    EXPECT_FLOAT_EQ(s.Height, 0.45f);
    EXPECT_EQ(s.Nation, 1000) << "999 is raised to French; 'nation' is another name";
    EXPECT_EQ(s.Port, 2101);
    EXPECT_EQ(s.IP, QStringLiteral("10.0.0.5"));
    EXPECT_EQ(s.Format, 1);
    EXPECT_EQ(s.Selection, 1);
    EXPECT_EQ(s.Drive, QStringLiteral("/srv/dealer"));

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\nNation=2000\n");
    EXPECT_EQ(readBack(CRegSettings(install.settingsFile())).Nation, 2000);
}

TEST(Settings, SaveWritesEveryValueBackWithPointDecimalsAndTheDataDrive) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = Key;
    state.Settings = {
        QStringLiteral("/old"), 0, 0.45f, 2, QStringLiteral("host"), 2000, 1, 0.6f, 2101};
    state.DataPath = QStringLiteral("/mnt/dealer/NVNV/");
    SaveSettings(store, state, PaneLayout{5000, 3000, 10000, 8000});

    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Width")), QStringLiteral("0.6"));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Height")), QStringLiteral("0.45"));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Drive")), QStringLiteral("/mnt/dealer"));
    const AppSettings back = readBack(store);
    EXPECT_EQ(back.Nation, 2000);
    EXPECT_EQ(back.Instal, 2);
    EXPECT_EQ(back.Selection, 1);
    EXPECT_EQ(back.IP, QStringLiteral("host"));
    EXPECT_EQ(back.Port, 2101);
    EXPECT_EQ(store.EnumValues(Key).size(), 9) << "Width and Height are written together";
}

TEST(Settings, SavingTheLayoutFollowsThePanesOnlyWhenAsked) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = Key;
    state.Settings.Width = 0.56f;
    state.Settings.Height = 0.37f;
    state.Settings.Format = 1;
    // First pane 4960 wide and third pane at 3240 in a 10000 x 8000 window.
    SaveSettings(store, state, PaneLayout{4960, 3240, 10000, 8000});
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Width")), QStringLiteral("0.5"));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Height")), QStringLiteral("0.4"));

    state.Settings.Format = 0;
    SaveSettings(store, state, PaneLayout{4960, 3240, 10000, 8000});
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Width")), QStringLiteral("0.56"));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Height")), QStringLiteral("0.37"));
}

TEST(Settings, RegistryOperationsOnTheirOwnKey) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Nothing"), 0, QStringLiteral("dflt")),
              QStringLiteral("dflt"));
    EXPECT_TRUE(store.SetValue(Key, QStringLiteral("*"), QStringLiteral("default value")));
    EXPECT_TRUE(store.SetValue(Key, QStringLiteral("IP"), QStringLiteral("a")));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("*")), QStringLiteral("default value"));
    EXPECT_TRUE(store.SetValue(Key, QStringLiteral("Drive"), QString()));
    EXPECT_EQ(store.QueryValue(Key, QStringLiteral("Drive"), 0, QStringLiteral("dflt")), QString())
        << "a value that exists answers its text, even an empty one";
    EXPECT_TRUE(store.DeleteValue(Key, QStringLiteral("IP")));
    EXPECT_FALSE(store.DeleteValue(Key, QStringLiteral("IP")));
    EXPECT_TRUE(store.DeleteValue(Key, QString()));
    EXPECT_EQ(store.EnumValues(Key).size(), 1);
}
