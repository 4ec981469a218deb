#pragma once

#include <QIcon>

// The picture of the command strip's button picMenu(index), 0 to 6: select lists by name,
// activate, change part numbers, options, deactivate, associate, dissociate. Each picture comes
// at single and double density, so that it stays sharp on a high-density screen.
QIcon CommandIcon(int index);

// The program's own icon (windows, the desktop's menu entry).
QIcon ProgramIcon();
