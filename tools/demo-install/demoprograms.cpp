#include "demoprograms.h"

#include "app/hiddenstrings.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

namespace {

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

} // namespace

void writeDemoPrograms(const QString& root, const QString& serviceProgram) {
    QDir dir(root);
    for (const char* name : {"PRG", "NVNV", "NVGL", "NVINFO"}) {
        if (!dir.mkpath(QString::fromLatin1(name)))
            throw std::runtime_error("cannot create " + root.toStdString() + "/" + name);
    }
    // The launcher only has to be there: the program checks the installation by it.
    writeFile(dir.filePath(QStringLiteral("PRG/MENU.EXE")), "Norvale Systems launcher\n");
    const QString installed = dir.filePath(QStringLiteral("NVNV/") + HiddenString(0));
    QFile::remove(installed);
    if (!QFile::copy(serviceProgram, installed))
        throw std::runtime_error("cannot copy the service program " + serviceProgram.toStdString());
    QFile::setPermissions(installed, QFile::permissions(serviceProgram));
}
