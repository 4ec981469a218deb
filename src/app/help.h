#pragma once

#include <QString>
#include <QUrl>

// The user guide of a language (nation 1000 French, 2000 English): the copy installed with the
// program, found from the program's directory, either beside it (a build) or in the shared data
// of its prefix (an installed package, e.g. /usr/bin and /usr/share/mercantel/guide). Without
// an installed guide, the maker's help page of that language (message 1112).
QUrl GuideUrl(int nation);
QUrl GuideUrl(int nation, const QString& programDir);

// Opens the guide of the current language in the desktop's browser (the F1 key).
void OpenGuide();
