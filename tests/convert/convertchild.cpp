// The kill test's child: convertlists with a fault after a chosen file step. Its own options
// come first: --stop-after N stops at the Nth file step, --by fail (the step reports a failure)
// or --by die (the process ends there at once, as if killed); --count prints how many file steps
// the run took. The other arguments are convertlists' own.
#include "convertlistsrun.h"

#include "dbase/dberror.h"
#include "partsfile/modnvconvert.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

namespace {

class StopAfter final : public modNVConvert::ConversionObserver {
public:
    StopAfter(int stopAt, bool die) : stopAt_(stopAt), die_(die) {}
    void fileStepDone(modNVConvert::FileStep step) override {
        if (++count != stopAt_)
            return;
        if (die_)
            std::_Exit(3);
        throw DbError(DbErrors::Io, QStringLiteral("Stopped after the step ") +
                                        modNVConvert::FileStepName(step) + u'.');
    }
    int count = 0;

private:
    int stopAt_;
    bool die_;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    int stopAt = 0;
    bool die = false;
    bool count = false;
    while (!arguments.isEmpty() && arguments.front().startsWith(QStringLiteral("--"))) {
        const QString option = arguments.takeFirst();
        if (option == u"--stop-after" && !arguments.isEmpty())
            stopAt = arguments.takeFirst().toInt();
        else if (option == u"--by" && !arguments.isEmpty())
            die = arguments.takeFirst() == u"die";
        else if (option == u"--count")
            count = true;
        else {
            arguments.prepend(option);
            break;
        }
    }
    StopAfter steps(stopAt, die);
    const int status = RunConvertLists(arguments, &steps);
    if (count)
        std::printf("steps %d\n", steps.count);
    return status;
}
