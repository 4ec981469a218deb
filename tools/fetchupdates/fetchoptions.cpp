#include "fetchoptions.h"

namespace {

const QString ItemOptions[] = {QStringLiteral("--marked"),     QStringLiteral("--lists"),
                               QStringLiteral("--containing"), QStringLiteral("--index"),
                               QStringLiteral("--partdex"),    QStringLiteral("--ledgermaker")};

int itemBox(const QString& option) {
    for (int box = 0; box < 6; ++box) {
        if (ItemOptions[box] == option)
            return box;
    }
    return -1;
}

bool takesValue(const QString& option) {
    return option == u"--host" || option == u"--port" || option == u"--lists" ||
           option == u"--containing" || option == u"--catalogues" || option == u"--timeout";
}

QStringList codes(const QString& value) {
    QStringList list;
    for (const QString& code : value.split(u',', Qt::SkipEmptyParts))
        list << code.trimmed().toUpper();
    return list;
}

// Applies one option and its value; an error text when it cannot be.
QString apply(FetchOptions& o, const QString& option, const QString& value) {
    bool ok = true;
    if (const int box = itemBox(option); box >= 0) {
        if (o.box >= 0)
            return QStringLiteral("only one of --marked, --lists, --containing, --index, "
                                  "--partdex, --ledgermaker may be given");
        o.box = box;
    }
    if (option == u"--host") {
        o.host = value;
    } else if (option == u"--port") {
        o.port = value.toInt(&ok);
        ok = ok && o.port > 0 && o.port < 65536;
    } else if (option == u"--lists") {
        o.lists = codes(value);
        ok = !o.lists.isEmpty();
    } else if (option == u"--containing") {
        // Typed into the window's field, letters turn to capitals.
        o.containing = value.toUpper();
        ok = !o.containing.trimmed().isEmpty();
    } else if (option == u"--catalogues") {
        o.catalogues = codes(value);
        ok = !o.catalogues.isEmpty();
    } else if (option == u"--timeout") {
        o.timeoutSeconds = value.toInt(&ok);
        ok = ok && o.timeoutSeconds > 0;
    } else if (option == u"--english") {
        o.english = true;
    } else if (itemBox(option) < 0) {
        return QStringLiteral("unknown option ") + option;
    }
    return ok ? QString()
              : QStringLiteral("bad value for ") + option + QStringLiteral(": ") + value;
}

} // namespace

QString FetchUsage() {
    return QStringLiteral(
        "usage: fetchupdates DRIVE [--host H] [--port P]\n"
        "                    [--marked | --lists F1,F2,... | --containing TEXT | --index |\n"
        "                     --partdex | --ledgermaker] [--catalogues C1,C2,...]\n"
        "                    [--english] [--timeout SECONDS]\n"
        "Fetches updates from the update server into the installation on DRIVE, as the\n"
        "Download button does, and prints the session report on standard output.\n"
        "With no item option only the version check runs. Exit status: 0 every item\n"
        "succeeded, 1 an item failed or the server could not be reached, 2 bad arguments.\n");
}

ParsedOptions ParseFetchOptions(const QStringList& arguments) {
    ParsedOptions parsed;
    FetchOptions o;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == u"--help" || argument == u"-h") {
            parsed.help = true;
            return parsed;
        }
        if (argument == u"--version") {
            parsed.version = true;
            return parsed;
        }
        if (!argument.startsWith(u"--")) {
            if (!o.drive.isEmpty()) {
                parsed.error = QStringLiteral("more than one DRIVE given");
                return parsed;
            }
            o.drive = argument;
            continue;
        }
        QString value;
        if (takesValue(argument)) {
            if (++i >= arguments.size()) {
                parsed.error = argument + QStringLiteral(" needs a value");
                return parsed;
            }
            value = arguments[i];
        }
        if (const QString error = apply(o, argument, value); !error.isEmpty()) {
            parsed.error = error;
            return parsed;
        }
    }
    if (o.drive.isEmpty())
        parsed.error = QStringLiteral("DRIVE missing");
    else if (!o.catalogues.isEmpty() && (o.box < 0 || o.box > 2))
        parsed.error = QStringLiteral("--catalogues goes with --marked, --lists or --containing");
    if (parsed.error.isEmpty())
        parsed.options = o;
    return parsed;
}
