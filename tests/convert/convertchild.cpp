// The kill test's child: convertlists stopped after a chosen file step. Its own first arguments
// are that step (0: none) and "fail" (the step reports a failure) or "die" (the process ends at
// once, as if killed); the rest are convertlists'. It prints how many file steps the run took.
#include "convertlistsrun.h"

#include "dbase/dberror.h"
#include "partsfile/modnvconvert.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

namespace {

struct StopAfter final : modNVConvert::ConversionObserver {
    StopAfter(int stopAt, bool die) : stopAt(stopAt), die(die) {}
    void fileStepDone(modNVConvert::FileStep step) override {
        if (++count != stopAt)
            return;
        if (die)
            std::_Exit(3);
        throw DbError(DbErrors::Io, QStringLiteral("Stopped after the step ") +
                                        modNVConvert::FileStepName(step) + u'.');
    }
    int stopAt;
    bool die;
    int count = 0;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    StopAfter steps(arguments.value(1).toInt(), arguments.value(2) == u"die");
    const int status = RunConvertLists(arguments.mid(3), &steps);
    std::printf("steps %d\n", steps.count);
    return status;
}
