#include "mainwindow/programwiring.h"

#include "app/frmquestion.h"
#include "app/mdifrmmain.h"
#include "data/moddata.h"
#include "mainwindow/frmmain.h"
#include "partsfile/modnvconvert.h"
#include "pricelists/programend.h"

namespace {

// The departments the question dialog offers: the rows of the shared DEPART recordset.
QList<Departement> departRows() {
    QList<Departement> rows;
    if (!rsDepart.isOpen())
        return rows;
    for (rsDepart.moveFirst(); !rsDepart.eof(); rsDepart.moveNext())
        rows.append({rsDepart.value(QStringLiteral("CODEP")).toString(),
                     rsDepart.value(QStringLiteral("DESCR")).toString()});
    return rows;
}

void showMainWindow(MDIfrmMain*& frame, const CRegSettings& settings) {
    frame = new MDIfrmMain;
    frame->setAttribute(Qt::WA_DeleteOnClose);
    auto* main = new frmMain(frame);
    main->settingsStore = settings;
    frame->setCentralWidget(main);
    frame->onQueryUnload = [main] { return main->QueryUnload(); };
    frame->onUnload = [main] { main->Unload(); };
    main->Load();
    frame->show();
    main->Activate();
}

StartupHooks programStartupHooks(MDIfrmMain*& frame, const CRegSettings& settings) {
    frmQuestion::setDepartementSource(departRows);
    StartupHooks hooks;
    hooks.openData = OpenData;
    hooks.detectInstal = MPDetectInstal;
    hooks.convert = [](bool forced) { return modNVConvert::Convert(forced); };
    // A list naming a catalogue the trees do not hold: the table is rebuilt in its old form and
    // the program ends, so that the next start converts it afresh.
    SetConversionRestart([] {
        bool forced = true;
        modNVConvert::Convert(forced);
        EndProgram();
    });
    hooks.showMainWindow = [&frame, settings] { showMainWindow(frame, settings); };
    return hooks;
}

} // namespace

StartupOutcome StartProgram(const QStringList& arguments, const StartupEnvironment& environment,
                            MDIfrmMain*& frame) {
    return Main(arguments.join(u' '), programStartupHooks(frame, environment.settings),
                environment);
}
