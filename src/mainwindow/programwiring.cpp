#include "mainwindow/programwiring.h"

#include "app/frmquestion.h"
#include "app/mdifrmmain.h"
#include "data/moddata.h"
#include "mainwindow/frmmain.h"

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

void showMainWindow(MDIfrmMain*& frame) {
    frame = new MDIfrmMain;
    frame->setAttribute(Qt::WA_DeleteOnClose);
    auto* main = new frmMain(frame);
    frame->setCentralWidget(main);
    frame->onQueryUnload = [main] { return main->QueryUnload(); };
    frame->onUnload = [main] { main->Unload(); };
    main->Load();
    frame->show();
    main->Activate();
}

} // namespace

StartupHooks ProgramStartupHooks(MDIfrmMain*& frame) {
    frmQuestion::setDepartementSource(departRows);
    StartupHooks hooks;
    hooks.openData = OpenData;
    hooks.detectInstal = MPDetectInstal;
    hooks.showMainWindow = [&frame] { showMainWindow(frame); };
    return hooks;
}
