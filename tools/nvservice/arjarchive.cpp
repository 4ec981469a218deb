#include "arjarchive.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace {

constexpr int ArjTimeoutMs = 120000;

QString arjProgram() {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("arj"));
    if (program.isEmpty())
        throw ArchiveError("the arj command is not installed");
    return program;
}

// The last line arj wrote that says something: its reason for a failure.
QString lastWords(const QByteArray& output) {
    const QList<QByteArray> lines = output.split('\n');
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        const QByteArray text = line->trimmed();
        if (!text.isEmpty() && !text.startsWith("Found"))
            return QString::fromLocal8Bit(text);
    }
    return QStringLiteral("no output");
}

// Runs arj in dir; throws with its reason unless it ends with status 0.
void runArj(const QStringList& arguments, const QString& dir) {
    QProcess arj;
    arj.setProgram(arjProgram());
    arj.setArguments(arguments);
    arj.setWorkingDirectory(dir);
    arj.setProcessChannelMode(QProcess::MergedChannels);
    arj.setStandardInputFile(QProcess::nullDevice());
    arj.start();
    if (!arj.waitForStarted(ArjTimeoutMs))
        throw ArchiveError("arj cannot be started: " + arj.errorString().toStdString());
    if (!arj.waitForFinished(ArjTimeoutMs)) {
        arj.kill();
        arj.waitForFinished();
        throw ArchiveError("arj did not finish");
    }
    const QByteArray output = arj.readAll();
    if (arj.exitStatus() != QProcess::NormalExit || arj.exitCode() != 0)
        throw ArchiveError(QStringLiteral("arj status %1: %2")
                               .arg(arj.exitCode())
                               .arg(lastWords(output))
                               .toStdString());
}

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw ArchiveError("cannot write " + path.toStdString());
}

} // namespace

void CreateArjArchive(const QString& path, const QList<ArchiveMember>& members) {
    QTemporaryDir staging;
    if (!staging.isValid())
        throw ArchiveError("no temporary directory for " + path.toStdString());
    QStringList arguments = {QStringLiteral("a"), QStringLiteral("-y"), QStringLiteral("-e")};
    const QString target = QFileInfo(path).absoluteFilePath();
    arguments << target;
    for (const ArchiveMember& member : members) {
        if (member.name.contains(u'/') || member.name.contains(u'\\'))
            throw ArchiveError("not a plain member name: " + member.name.toStdString());
        writeFile(staging.filePath(member.name), member.content);
        arguments << member.name;
    }
    QFile::remove(target);
    runArj(arguments, staging.path());
}

UnpackedArchive::UnpackedArchive(const QString& archivePath, const QString& workDir)
    : dir_(std::make_unique<QTemporaryDir>(
          QDir(workDir).filePath(QStringLiteral(".unpack-XXXXXX")))) {
    if (!QFileInfo(archivePath).isFile())
        throw ArchiveError("no archive " + archivePath.toStdString());
    if (!dir_->isValid())
        throw ArchiveError("cannot unpack into " + workDir.toStdString());
    const QString archive = QFileInfo(archivePath).absoluteFilePath();
    // Test first: arj would otherwise leave the members before a damaged one unpacked.
    runArj({QStringLiteral("t"), QStringLiteral("-y"), archive}, dir_->path());
    runArj({QStringLiteral("e"), QStringLiteral("-y"), archive, dir_->path() + u'/'}, dir_->path());
    names_ = QDir(dir_->path()).entryList(QDir::Files | QDir::Hidden);
}

QString UnpackedArchive::find(const QString& name) const {
    for (const QString& member : names_)
        if (member.compare(name, Qt::CaseInsensitive) == 0)
            return member;
    return {};
}

QString UnpackedArchive::path(const QString& member) const {
    return dir_->filePath(member);
}

QByteArray UnpackedArchive::read(const QString& member) const {
    QFile file(path(member));
    if (!file.open(QIODevice::ReadOnly))
        throw ArchiveError("cannot read the member " + member.toStdString());
    return file.readAll();
}

void UnpackedArchive::moveInto(const QString& dir, const QStringList& except) const {
    for (const QString& member : names_) {
        if (except.contains(member, Qt::CaseInsensitive))
            continue;
        const QString target = QDir(dir).filePath(member);
        QFile::remove(target);
        if (!QFile::rename(path(member), target))
            throw ArchiveError("cannot put " + member.toStdString() + " into " + dir.toStdString());
    }
}
