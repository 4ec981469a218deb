#include "convertlistsrun.h"
#include "standardoptions.h"

#include "app/appstate.h"
#include "app/fileop.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/startup.h"
#include "app/version.h"
#include "dbase/connection.h"
#include "dbase/dberror.h"
#include "partsfile/modnvconvert.h"

#include <QString>
#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

using namespace modNVConvert;

namespace {

const char Usage[] =
    "usage: convertlists DRIVE [--force] [--english]\n"
    "Brings the price-list table PRIXLIST of the installation on DRIVE to its current form:\n"
    "the CATNO field, filled from the catalogues' categories. A table already converted is\n"
    "left as it is.\n"
    "  --force    rebuild the table with its old fields first, then convert it again\n"
    "  --english  messages in English\n"
    "Exit status: 0 converted or nothing to do, 1 the conversion failed (the table is left\n"
    "whole), 2 bad arguments or DRIVE is not an installation.\n";

// Progress on standard error: one line that moves on a terminal, a line per step otherwise.
class TextProgress final : public ConversionObserver {
public:
    explicit TextProgress(ConversionObserver* steps)
        : steps_(steps), terminal_(isatty(fileno(stderr)) != 0) {}
    ~TextProgress() override {
        if (terminal_ && shown_ >= 0)
            std::fputc('\n', stderr);
    }
    void progress(int percent) override {
        if (percent == shown_)
            return;
        shown_ = percent;
        if (!terminal_) {
            PrintLine(stderr, ProgressText(percent));
            return;
        }
        const QByteArray bytes = ProgressText(percent).toUtf8();
        std::fprintf(stderr, "\r%s", bytes.constData());
        std::fflush(stderr);
    }
    void fileStepDone(FileStep step) override {
        if (steps_)
            steps_->fileStepDone(step);
    }

private:
    ConversionObserver* steps_;
    bool terminal_;
    int shown_ = -1;
};

struct Options {
    QString drive;
    bool force = false;
    bool english = false;
};

// Nothing is written unless the drive holds the dealer's launcher and the price-list table.
bool isInstallation(const QString& drive) {
    return FileOp(QString(),
                  InstallDir(drive, QStringLiteral("PRG")) + QStringLiteral("MENU.EXE")) &&
           FileOp(QString(),
                  InstallDir(drive, QStringLiteral("NVNV")) + QStringLiteral("PRIXLIST.DBF"));
}

int convert(const Options& options, ConversionObserver* steps) {
    Connection data;
    data.open(ResolveInstallPath(App().DataPath));
    TextProgress progress(steps);
    if (options.force) {
        RebuildOldTable(data, progress);
    } else if (PrixListFieldCount(data) >= ConvertedFieldCount) {
        FinishConversion(data);
        PrintLine(
            stdout,
            QStringLiteral("PRIXLIST: %1 fields, already converted").arg(PrixListFieldCount(data)));
        return ConvertListsDone;
    }
    ConvertTable(data, progress);
    PrintLine(stderr, LoadText(81));
    PrintLine(stdout,
              QStringLiteral("PRIXLIST: converted, %1 fields").arg(PrixListFieldCount(data)));
    return ConvertListsDone;
}

int usage(const QString& why) {
    if (!why.isEmpty())
        PrintLine(stderr, QStringLiteral("convertlists: ") + why);
    std::fputs(Usage, stderr);
    return ConvertListsBadArguments;
}

} // namespace

int RunConvertLists(const QStringList& arguments, ConversionObserver* steps) {
    if (const std::optional<int> answered = AnswerStandardOptions(arguments, "convertlists", Usage))
        return *answered;
    Options options;
    for (const QString& argument : arguments) {
        if (argument == u"--force")
            options.force = true;
        else if (argument == u"--english")
            options.english = true;
        else if (argument.startsWith(u'-') || !options.drive.isEmpty())
            return usage(QStringLiteral("unexpected argument: ") + argument);
        else
            options.drive = argument;
    }
    if (options.drive.isEmpty())
        return usage(QStringLiteral("DRIVE is missing"));
    if (!isInstallation(options.drive))
        return usage(options.drive + QStringLiteral(" is not an installation (no PRG/MENU.EXE "
                                                    "or no NVNV/PRIXLIST.DBF)"));
    App().Settings.Nation = options.english ? 2000 : 1000;
    App().DataPath = InstallDir(options.drive, QStringLiteral("NVNV"));
    try {
        return convert(options, steps);
    } catch (const DbError& error) {
        PrintLine(stderr, QStringLiteral("errConvert: ") + LoadText(137) + u' ' +
                              QString::number(error.number()) + u' ' + error.description());
        return ConvertListsFailed;
    }
}
