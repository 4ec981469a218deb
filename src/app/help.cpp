#include "app/help.h"

#include "app/appstate.h"
#include "app/messages.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>

namespace {

const int TextHelpPage = 112;

QString languageFolder(int nation) {
    return nation == 2000 ? QStringLiteral("en") : QStringLiteral("fr");
}

} // namespace

QUrl GuideUrl(int nation, const QString& programDir) {
    const QDir dir(programDir);
    const QString page = languageFolder(nation) + QStringLiteral("/index.html");
    for (const QString& guide :
         {QStringLiteral("guide/"), QStringLiteral("../share/mercantel/guide/")}) {
        const QFileInfo file(dir.filePath(guide + page));
        if (file.isFile())
            return QUrl::fromLocalFile(file.canonicalFilePath());
    }
    const int id = (nation == 2000 ? 2000 : 1000) + TextHelpPage;
    return QUrl(MessageCatalogue::text(id));
}

QUrl GuideUrl(int nation) {
    return GuideUrl(nation, QCoreApplication::applicationDirPath());
}

void OpenGuide() {
    QDesktopServices::openUrl(GuideUrl(App().Settings.Nation));
}
