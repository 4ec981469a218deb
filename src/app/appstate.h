#pragma once

#include <QString>
#include <QtGlobal>

// The nine per-machine settings, read at start-up and written back at shut-down.
struct AppSettings {
    QString Drive;
    qint16 Format = 0;
    float Height = 0;
    qint16 Instal = 0;
    QString IP;
    qint16 Nation = 0;
    qint16 Selection = 0;
    float Width = 0;
    qint16 Port = 0;
};

// State kept for the whole run; every part of the program may read it.
struct AppState {
    bool UpdateMode = false;
    bool QuitWithoutAsking = false;
    QString ContactLine;
    QString RegistryKeyPath;
    AppSettings Settings;
    QString PrgPath;   // Drive + "/PRG/": the dealer's launcher directory
    QString DataPath;  // Drive + "/NVNV/": shared tables and the service program
    QString GLPath;    // Drive + "/NVGL/"
    QString InfoPath;  // Drive + "/NVINFO/": newsletters
    QString ErrorText; // what frmErrMsg shows
};

AppState& App();

// Restores a fresh state (French, no paths); used between runs in tests.
void ResetAppState();
