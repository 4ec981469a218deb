#include "app/messages.h"

#include "app/appstate.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTextStream>
#include <QTranslator>
#include <stdexcept>

namespace {

// One line per text: the resource id, a blank, then the text between double quotes. The
// quotes keep leading and trailing blanks visible and exact.
void loadFile(const QString& path, QHash<int, QString>& texts) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("message catalogue missing: " + path.toStdString());
    QTextStream in(&file);
    in.setEncoding(QStringConverter::Utf8);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype open = line.indexOf(u'"');
        const qsizetype close = line.lastIndexOf(u'"');
        if (open < 0 || close <= open)
            throw std::runtime_error("bad catalogue line: " + line.toStdString());
        texts.insert(line.left(open).trimmed().toInt(), line.mid(open + 1, close - open - 1));
    }
}

const QHash<int, QString>& catalogue() {
    static const QHash<int, QString> texts = [] {
        QHash<int, QString> all;
        loadFile(QStringLiteral(":/messages/messages_fr.txt"), all);
        loadFile(QStringLiteral(":/messages/messages_en.txt"), all);
        return all;
    }();
    return texts;
}

} // namespace

QString MessageCatalogue::text(int id) {
    const auto it = catalogue().constFind(id);
    if (it == catalogue().constEnd())
        throw std::out_of_range("no message " + std::to_string(id));
    return *it;
}

bool MessageCatalogue::contains(int id) {
    return catalogue().contains(id);
}

QString LoadText(int k) {
    const int id = App().Settings.Nation + k;
    // A language base other than the two catalogues falls back on French rather than failing.
    return MessageCatalogue::text(MessageCatalogue::contains(id) ? id : 1000 + k);
}

void LoadQtTranslations() {
    static QPointer<QTranslator> installed;
    delete installed; // a translator leaves the application as it goes
    const QLocale language(App().Settings.Nation == 2000 ? QLocale::English : QLocale::French);
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(language, QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(translator);
        installed = translator;
    } else {
        delete translator; // Qt's own texts are English already
    }
}
