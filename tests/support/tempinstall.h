#pragma once

#include <QString>
#include <QTemporaryDir>

// A dealer's installation in a temporary directory: the drive with PRG (holding MENU.EXE),
// NVNV, NVGL and NVINFO, a directory standing for the program's own directory, and a settings
// file of its own.
class TempInstall {
public:
    TempInstall();

    QString drive() const;                  // the installation's drive directory
    QString dir(const QString& name) const; // drive/name/, ending with the separator
    QString programDir() const;             // where the program "lives"
    QString settingsFile() const;           // the INI file standing for the registry
    QString serviceProgramName() const;     // hidden entry 0
    // Puts the built stand-in service program into the program directory.
    void installServiceProgram() const;
    void write(const QString& path, const QByteArray& content = "x") const;

private:
    QTemporaryDir root_;
};
