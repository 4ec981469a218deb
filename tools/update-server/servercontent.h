#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// What the update server offers, read from its content directory. The layout (names matched
// without regard to case, so a directory copied from Windows serves as it is):
//
//   VERSIONS                   one line: Partdex version;Ledgermaker version;program version
//   NVBATI.DAT                 the start file, sent to every session first
//   NVINFO.ARJ                 the index archive (newsletters and their index)
//   UPDATE.EXE                 the new version of the desktop program
//   lists/FICHIER.ARJ          a price list, by its file code
//   catalogues/FICHIER/CAT.ARJ and catalogues/FICHIER/CATA.ARJ
//                              the two files of a catalogue, by its file code
//   partdex/CODE.ARJ           the Partdex package, by the program code the dealer sends
//   ledgermaker/CODE.ARJ       the Ledgermaker package, by program code
class ServerContent {
public:
    explicit ServerContent(QString directory);

    QString directory() const { return directory_; }

    // The file that answers a request as the client sends it ("LISTEACD00", "CAT  AUT",
    // "NVINFNVCOM", ...), or nothing when the request names no file or the file is missing.
    // Item codes that could leave the content directory are refused.
    std::optional<QString> fileFor(const QByteArray& request) const;

    // The versions "p;l;m": those set by setVersions(), else the first line of the VERSIONS
    // file (trimmed), else empty.
    QByteArray versions() const;
    void setVersions(const QByteArray& versions) { versions_ = versions; }

private:
    std::optional<QString> existing(const QString& relativePath) const;

    QString directory_;
    QByteArray versions_;
};

// True for an item code that names one file of its folder: not empty, printable ASCII, no
// separator and no "..".
bool isPlainItemCode(const QByteArray& code);
