// update-server CONTENT [options]: plays the maker's update server on the loopback interface,
// for the demonstration and the tests. Prints the port it listens on, then one line per event
// on standard error until it is stopped.
#include "updateserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <QSocketNotifier>
#include <csignal>
#include <unistd.h>
#endif

namespace {

const char Description[] =
    "Plays the maker's update server for the desktop program and fetchupdates.\n"
    "It listens on 127.0.0.1, prints the port on standard output, greets each\n"
    "connection with OKOKO and answers the requests from the content directory.\n"
    "\n"
    "Content directory (names matched without regard to case):\n"
    "  VERSIONS                 one line: Partdex;Ledgermaker;program versions\n"
    "                           (e.g. 5.3.0;3.9.0;2004.3.5), the VERSI answer\n"
    "  NVBATI.DAT               the start file, sent first in every session\n"
    "  NVINFO.ARJ               the index archive (NVINFNVCOM)\n"
    "  UPDATE.EXE               the new program version (UPDA2)\n"
    "  lists/FICHIER.ARJ        a price list (LISTE + FICHIER)\n"
    "  catalogues/FICHIER/CAT.ARJ, catalogues/FICHIER/CATA.ARJ\n"
    "                           the two files of a catalogue (CAT / CATA + FICHIER)\n"
    "  partdex/CODE.ARJ         the Partdex package (PARTD + program code)\n"
    "  ledgermaker/CODE.ARJ     the Ledgermaker package (LEDGM + program code)\n"
    "A request for anything missing is answered ERROR.\n"
    "\n"
    "What the installation's service program expects in the ARJ archives:\n"
    "  a list: LISTE.INF (FICHIER=code, optionally DATEEFF=yyyymmdd) and its files;\n"
    "  a catalogue: CATALOG.INF (the same lines) in CAT.ARJ, its files in CATA.ARJ;\n"
    "  the index: NVINDEX.DBF (newsletters, added by NUMERO) and their files;\n"
    "  a package: VERSION (the version installed) and the program's files.\n"
    "\n"
    "Faults: REQ is the start of a request as the client sends it (LISTE, LISTEACD00,\n"
    "\"CAT  AUT\", BATI3, VERSI, NVINFNVCOM, UPDA2, PARTD, LEDGM); without :REQ a file\n"
    "fault applies to every file.\n"
    "\n"
    "Exit status: 0 stopped normally, 1 the port could not be had, 2 bad arguments.";

struct Parsed {
    ServerFaults faults;
    quint16 port = 2001;
    QByteArray versions;
    QString content;
    bool quiet = false;
};

[[noreturn]] void fail(const QString& message) {
    std::fprintf(stderr, "update-server: %s\n", qPrintable(message));
    std::exit(2);
}

qint64 number(const QString& text, const QString& option, bool allowNegative = false) {
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || (value < 0 && !allowNegative))
        fail(QStringLiteral("--%1: not a valid number: %2").arg(option, text));
    return value;
}

// "N" or "N:REQ".
std::optional<FileFault> fileFault(const QCommandLineParser& parser, const QString& option,
                                   bool allowNegative = false) {
    if (!parser.isSet(option))
        return std::nullopt;
    const QString value = parser.value(option);
    const qsizetype colon = value.indexOf(u':');
    FileFault fault;
    fault.value = number(value.left(colon), option, allowNegative);
    if (colon >= 0)
        fault.request = value.mid(colon + 1).toLatin1();
    return fault;
}

QList<QByteArray> requests(const QStringList& values) {
    QList<QByteArray> list;
    for (const QString& v : values)
        list << v.toLatin1();
    return list;
}

Parsed parse(const QCoreApplication& app) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(Description));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("CONTENT"), QStringLiteral("content directory"));
    const auto option = [&](const char* name, const char* help, const char* value = nullptr) {
        parser.addOption(
            value ? QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help),
                                       QString::fromLatin1(value))
                  : QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(help)));
    };
    option("port", "Port to listen on; 0 picks a free one below 32768 (default 2001).", "PORT");
    option("versions", "Versions to answer instead of the VERSIONS file.", "P;L;M");
    option("quiet", "Log nothing on standard error.");
    option("silent-on-connect", "Never send OKOKO.");
    option("silent-on", "Receive REQ, then answer nothing more (repeatable).", "REQ");
    option("error-on", "Answer ERROR to REQ (repeatable).", "REQ");
    option("close-after", "Close the connection after N bytes of a file.", "N[:REQ]");
    option("stall-after", "Send nothing more after N bytes of a file.", "N[:REQ]");
    option("wrong-size", "Announce files DELTA bytes bigger (negative: smaller).", "DELTA[:REQ]");
    option("chunk", "Send files in pieces of BYTES.", "BYTES");
    option("delay", "Wait MS milliseconds between two pieces of a file.", "MS");
    option("refuse", "Keep the port but refuse every connection.");
    parser.process(app);

    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1)
        fail(QStringLiteral("give one content directory (see --help)"));
    Parsed p;
    p.content = QDir(positional[0]).absolutePath();
    if (!QDir(p.content).exists())
        fail(QStringLiteral("no such content directory: ") + p.content);
    if (parser.isSet(QStringLiteral("port"))) {
        const qint64 port = number(parser.value(QStringLiteral("port")), QStringLiteral("port"));
        if (port > 65535)
            fail(QStringLiteral("--port: out of range"));
        p.port = quint16(port);
    }
    p.versions = parser.value(QStringLiteral("versions")).toLatin1();
    p.quiet = parser.isSet(QStringLiteral("quiet"));
    ServerFaults& f = p.faults;
    f.silentOnConnect = parser.isSet(QStringLiteral("silent-on-connect"));
    f.silentOn = requests(parser.values(QStringLiteral("silent-on")));
    f.errorOn = requests(parser.values(QStringLiteral("error-on")));
    f.closeAfter = fileFault(parser, QStringLiteral("close-after"));
    f.stallAfter = fileFault(parser, QStringLiteral("stall-after"));
    f.wrongSize = fileFault(parser, QStringLiteral("wrong-size"), true);
    if (parser.isSet(QStringLiteral("chunk")))
        f.chunkSize = number(parser.value(QStringLiteral("chunk")), QStringLiteral("chunk"));
    if (parser.isSet(QStringLiteral("delay")))
        f.chunkDelayMs =
            int(number(parser.value(QStringLiteral("delay")), QStringLiteral("delay")));
    f.refuseConnections = parser.isSet(QStringLiteral("refuse"));
    return p;
}

#ifdef Q_OS_UNIX
// A stop by signal (the demo script's kill, Ctrl+C) ends the event loop, so that the server
// closes its sessions and exits with status 0. The handler only writes to a pipe; the event
// loop does the rest.
int stopPipe[2] = {-1, -1};

void onStopSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(stopPipe[1], &byte, 1);
}

void quitOnStopSignals(QCoreApplication& app) {
    if (::pipe(stopPipe) != 0)
        return;
    auto* notifier = new QSocketNotifier(stopPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    std::signal(SIGTERM, onStopSignal);
    std::signal(SIGINT, onStopSignal);
}
#else
void quitOnStopSignals(QCoreApplication&) {}
#endif

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("update-server"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MERCANTEL_VERSION));
    const Parsed parsed = parse(app);

    ServerContent content(parsed.content);
    content.setVersions(parsed.versions);
    UpdateServer server(content, parsed.faults);
    if (!parsed.quiet)
        QObject::connect(&server, &UpdateServer::logLine, [](const QString& line) {
            std::fprintf(stderr, "%s\n", qPrintable(line));
        });
    if (!server.start(parsed.port)) {
        std::fprintf(stderr, "update-server: cannot listen on port %u: %s\n", unsigned(parsed.port),
                     qPrintable(server.errorString()));
        return 1;
    }
    quitOnStopSignals(app);
    std::printf("%u\n", unsigned(server.port()));
    std::fflush(stdout);
    return app.exec();
}
