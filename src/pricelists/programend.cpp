#include "pricelists/programend.h"

#include "app/messages.h"
#include "app/prompts.h"

#include <cstdlib>
#include <utility>

namespace {

ProgramEnd& programEnd() {
    static ProgramEnd end;
    return end;
}

ConversionRestart& conversionRestart() {
    static ConversionRestart restart;
    return restart;
}

} // namespace

void EndProgram() {
    if (programEnd()) {
        programEnd()();
        return;
    }
    std::exit(0);
}

ProgramEnd SetProgramEnd(ProgramEnd end) {
    return std::exchange(programEnd(), std::move(end));
}

void RestartForConversion() {
    if (conversionRestart()) {
        conversionRestart()();
        return;
    }
    MsgBox(LoadText(133));
    EndProgram();
}

ConversionRestart SetConversionRestart(ConversionRestart restart) {
    return std::exchange(conversionRestart(), std::move(restart));
}
