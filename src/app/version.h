#pragma once

#include <QString>

struct ProgramVersion {
    int major;
    int minor;
    int revision;
};

ProgramVersion CurrentVersion();

// The product name of the current language, " Version Beta " and the version, as the splash
// and the frame show it: "Mercantel Version Beta 2004.3.2".
QString VersionedTitle();

// The maker's name, as the program's version information gives it.
QString CompanyName();
