#include "app/icons.h"

#include <QString>
#include <array>

namespace {

// The pictures of the command strip, in the order of its buttons.
const std::array<const char*, 7> CommandPictures = {
    "select", "activate", "partnumbers", "options", "deactivate", "associate", "dissociate"};

QIcon iconAtBothDensities(const QString& name) {
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/%1.png").arg(name));
    icon.addFile(QStringLiteral(":/icons/%1@2x.png").arg(name));
    return icon;
}

} // namespace

QIcon CommandIcon(int index) {
    if (index < 0 || index >= int(CommandPictures.size()))
        return {};
    return iconAtBothDensities(QString::fromLatin1(CommandPictures[size_t(index)]));
}

QIcon ProgramIcon() {
    QIcon icon = iconAtBothDensities(QStringLiteral("mercantel"));
    for (int size : {16, 48, 128, 256})
        icon.addFile(QStringLiteral(":/icons/mercantel-%1.png").arg(size));
    return icon;
}
