#pragma once

// A main window on a small demo installation, inside its frame, with the data open.
#include "app/appstate.h"
#include "app/mdifrmmain.h"
#include "data/moddata.h"
#include "demotables.h"
#include "mainwindow/frmmain.h"

#include "tempinstall.h"

#include <QTest>
#include <gtest/gtest.h>

struct MainWindowOnDemoData : ::testing::Test {
    TempInstall install;
    MDIfrmMain frame;
    frmMain* main = nullptr;

    void SetUp() override {
        ResetAppState();
        App().Settings.Nation = 1000;
        App().Settings.Width = 0.56f;
        App().Settings.Height = 0.37f;
        App().RegistryKeyPath = QStringLiteral("Software\\Norvale Systems");
        App().DataPath = install.dir(QStringLiteral("NVNV"));
        App().PrgPath = install.dir(QStringLiteral("PRG"));
        App().InfoPath = install.dir(QStringLiteral("NVINFO"));
        writeDemoTables(install.drive());
        ASSERT_TRUE(OpenData());
        main = new frmMain(&frame);
        main->settingsStore = CRegSettings(install.settingsFile());
        frame.setCentralWidget(main);
        frame.resize(1000, 700);
    }
    // Loads the window and shows it active, as the dealer finds it.
    void loadActive() {
        main->Load();
        frame.show();
        frame.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    }
    void TearDown() override {
        CloseData();
        ResetAppState();
    }
};
