#pragma once

#include <QByteArray>
#include <QList>
#include <optional>

// Ways the update server can be made to misbehave, for the tests and the demonstrations of the
// desktop program's error paths. A request is named by the start of the message the client
// sends ("LISTE" for every list, "LISTEACD00" for one, "CAT  AUT", "BATI3", "VERSI"); an empty
// name matches every request.
struct FileFault {
    qint64 value = 0;
    QByteArray request;
};

struct ServerFaults {
    bool silentOnConnect = false;        // never say "OKOKO"
    QList<QByteArray> silentOn;          // receive the request, then answer nothing more
    QList<QByteArray> errorOn;           // answer "ERROR" instead of the file
    std::optional<FileFault> closeAfter; // close the connection after this many bytes of a file
    std::optional<FileFault> stallAfter; // send nothing more after this many bytes of a file
    std::optional<FileFault> wrongSize;  // announce the size plus this (negative: less)
    qint64 chunkSize = 0;           // send files in pieces of this size (0: as fast as it goes)
    int chunkDelayMs = 0;           // pause between two pieces
    bool refuseConnections = false; // keep the port but do not listen on it

    static bool names(const QByteArray& name, const QByteArray& request) {
        return request.startsWith(name);
    }
    static bool namesAny(const QList<QByteArray>& names, const QByteArray& request) {
        for (const QByteArray& name : names)
            if (request.startsWith(name))
                return true;
        return false;
    }
    static std::optional<qint64> valueFor(const std::optional<FileFault>& fault,
                                          const QByteArray& request) {
        if (fault && request.startsWith(fault->request))
            return fault->value;
        return std::nullopt;
    }
};
