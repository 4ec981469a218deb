#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// What fetchupdates was asked to do.
struct FetchOptions {
    QString drive;
    QString host;           // empty: the settings' server
    int port = 0;           // 0: the settings' port
    int box = -1;           // the update box chosen (0 to 5), -1: the version check only
    QStringList lists;      // --lists
    QString containing;     // --containing
    QStringList catalogues; // --catalogues
    bool english = false;
    int timeoutSeconds = 0;
};

// The options of a command line (without the program name), or the reason they are refused.
struct ParsedOptions {
    std::optional<FetchOptions> options;
    QString error;
    bool help = false;
    bool version = false;
};
ParsedOptions ParseFetchOptions(const QStringList& arguments);

QString FetchUsage();
