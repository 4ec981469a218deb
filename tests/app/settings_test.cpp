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
              std::tuple(2101, QStringLiteral("10.0.0.5"), 1, 0, QStringLiteral("/srv/dealer")));

    install.write(install.settingsFile(), "[Software/Norvale%20Systems]\nNation=2000\n");
    const AppSettings english = readBack(CRegSettings(install.settingsFile()));
    EXPECT_EQ(english.Nation, 2000);
    EXPECT_EQ(english.Port, 2001);
    EXPECT_EQ(english.Drive, DefaultDrive());
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
    const AppSettings& s = state.Settings;
    const AppSettings back = readBack(store);
    EXPECT_EQ(std::tie(back.Nation, back.Instal, back.Selection, back.Format, back.IP, back.Port),
              std::tie(s.Nation, s.Instal, s.Selection, s.Format, s.IP, s.Port));
    EXPECT_EQ(store.EnumValues(Key).size(), 9);
}

// With Format 1 the next start puts the panes back where the dealer left them, whatever the
// window's size; otherwise the stored fractions stay.
TEST(Settings, TheSavedLayoutPutsThePanesBackWhereTheyStood) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = Key;
    state.Settings.Width = 0.56f;
    state.Settings.Height = 0.37f;
    state.Settings.Format = 1;
    for (const auto& [width, height] : {std::pair{10000.0, 8000.0}, {19200.0, 11400.0}}) {
        const PanePlacement left = PlacePanes(width, height, 0.537, 0.4123); // moved
        SaveSettings(store, state, PaneLayout{left.pane[0].width, left.pane[2].top, width, height});
        const AppSettings next = readBack(store);
        const PanePlacement back = PlacePanes(width, height, next.Width, next.Height);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(back.pane[i].left, left.pane[i].left, 0.01) << i;
            EXPECT_NEAR(back.pane[i].top, left.pane[i].top, 0.01) << i;
            EXPECT_NEAR(back.pane[i].right(), left.pane[i].right(), 0.01) << i;
            EXPECT_NEAR(back.pane[i].bottom(), left.pane[i].bottom(), 0.01) << i;
        }
        // The panes fill the window, with the splitters' room between them.
        EXPECT_DOUBLE_EQ(left.pane[1].left - left.pane[0].right(), 2 * SplitterRoom);
        EXPECT_DOUBLE_EQ(left.pane[2].top - left.pane[1].bottom(), 2 * SplitterRoom);
        EXPECT_DOUBLE_EQ(left.pane[1].right(), width);
        EXPECT_DOUBLE_EQ(left.pane[2].bottom(), height);
    }

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
