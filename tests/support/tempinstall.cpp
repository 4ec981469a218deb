#include "tempinstall.h"

#include "app/hiddenstrings.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

TempInstall::TempInstall() {
    if (!root_.isValid())
        throw std::runtime_error("no temporary directory");
    QDir root(root_.path());
    for (const char* name : {"drive/PRG", "drive/NVNV", "drive/NVGL", "drive/NVINFO", "program"})
        root.mkpath(QString::fromLatin1(name));
    write(dir(QStringLiteral("PRG")) + QStringLiteral("MENU.EXE"));
}

QString TempInstall::drive() const {
    return root_.filePath(QStringLiteral("drive"));
}

QString TempInstall::dir(const QString& name) const {
    return drive() + u'/' + name + u'/';
}

QString TempInstall::programDir() const {
    return root_.filePath(QStringLiteral("program"));
}

QString TempInstall::settingsFile() const {
    return root_.filePath(QStringLiteral("settings.ini"));
}

QString TempInstall::serviceProgramName() const {
    return HiddenString(0);
}

void TempInstall::installServiceProgram() const {
    const QString built = QStringLiteral(MERCANTEL_BINARY_DIR "/src/") + serviceProgramName();
    const QString target = programDir() + u'/' + serviceProgramName();
    QFile::remove(target);
    if (!QFile::copy(built, target))
        throw std::runtime_error("stand-in service program not built: " + built.toStdString());
}

void TempInstall::write(const QString& path, const QByteArray& content) const {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}
