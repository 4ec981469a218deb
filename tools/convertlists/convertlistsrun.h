#pragma once

#include <QStringList>

namespace modNVConvert {
class ConversionObserver;
}

// Exit statuses of convertlists.
enum ConvertListsStatus {
    ConvertListsDone = 0,         // converted, or nothing to do
    ConvertListsFailed = 1,       // the conversion failed; PRIXLIST is left whole
    ConvertListsBadArguments = 2, // bad arguments, or DRIVE is not an installation
};

// convertlists DRIVE [--force] [--english]: the conversion of the installation on DRIVE, the
// questions answered as OK, progress and messages on standard error, the result on standard
// output. `steps`, when given, also sees every file step (and may stop the run there).
int RunConvertLists(const QStringList& arguments,
                    modNVConvert::ConversionObserver* steps = nullptr);
