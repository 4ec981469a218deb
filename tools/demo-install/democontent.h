#pragma once

#include <QDate>
#include <QString>

// Writes the demo update server's content directory (the layout of update-server --help) for
// the installation under root, from that installation's own tables, so that every download box
// of the program does something visible: each price list and catalogue has its archive (a
// downloaded list or catalogue becomes up to date), the index archive brings three newsletters,
// the companion packages (one per program code of NVAPPEL) install the offered versions, and a
// newer version of the program is offered with the signed demo updater as UPDATE.EXE. Throws
// std::exception when something cannot be written.
void writeDemoContent(const QString& contentDir, const QString& root,
                      const QDate& today = QDate::currentDate());
