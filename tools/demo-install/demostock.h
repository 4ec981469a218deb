#pragma once

#include <QString>

// Writes the demo installation's parts file: root/PRG/STOCK.DBF with 200,000 parts numbered
// after the demo price lists' group codes, and its Clipper index root/PRG/STOCK.NTX with pages
// as a Clipper program leaves them after updates. A file that cannot be written is reported on
// standard error.
void writeDemoStock(const QString& root);
