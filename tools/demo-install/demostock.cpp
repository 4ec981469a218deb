#include "demostock.h"

#include "demodata.h"
#include "stockfixtures/stockgenerator.h"

#include <QDir>
#include <QtGlobal>

void writeDemoStock(const QString& root) {
    StockGeneration generation;
    generation.parts = 200000;
    generation.prefixes = DemoGroupCodes;
    generation.duplicates = 12;
    generation.deleted = 8;
    // Pages about three quarters full, their offset tables shuffled by years of updates.
    generation.index.keysPerPage = 28;
    generation.index.clipperUpdated = true;
    generation.index.seed = 1994;
    const QString prg = QDir(root).filePath(QStringLiteral("PRG"));
    if (!WriteStockFiles(prg, generation).written)
        qWarning("demo-install: cannot write the parts file in %s", qPrintable(prg));
}
