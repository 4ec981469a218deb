#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>
#include <stdexcept>

// The maker's downloads are ARJ archives. They are made and read with the arj command of the
// system (Debian's "arj" package), the same tool on both sides: it checks every member's CRC,
// so a damaged or truncated archive is refused as a whole before anything is unpacked.

class ArchiveError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ArchiveMember {
    QString name; // a plain file name, no directory
    QByteArray content;
};

// Writes a new archive at path (replacing any file there) holding the members. Throws
// ArchiveError when arj is missing or fails.
void CreateArjArchive(const QString& path, const QList<ArchiveMember>& members);

// The members of an archive, unpacked into a temporary directory that lives as long as the
// object. The directory is made inside workDir, so that members can be moved from it into the
// installation by a rename.
class UnpackedArchive {
public:
    // Tests the whole archive, then unpacks it. Throws ArchiveError with arj's own reason when
    // the archive is missing, damaged or not an ARJ archive.
    UnpackedArchive(const QString& archivePath, const QString& workDir);

    QStringList names() const { return names_; }
    // The member named name without regard to case, or an empty text.
    QString find(const QString& name) const;
    QString path(const QString& member) const;
    QByteArray read(const QString& member) const;
    // Moves every member but those named in except into dir, replacing files of the same name.
    void moveInto(const QString& dir, const QStringList& except = {}) const;

private:
    std::unique_ptr<QTemporaryDir> dir_;
    QStringList names_;
};
