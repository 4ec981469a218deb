// The questions and messages of a conversion, as the scripted prompts expect them.
#include "oldtables.h"
#include "scriptedprompter.h"

#include "app/messages.h"

void ExpectConversion(ScriptedPrompter& prompts, Answer answer) {
    prompts.expectMessage(LoadText(80), Buttons::OkCancel, Icon::None, {}, answer)
        .expectMessage(LoadText(answer == Answer::Ok ? 81 : 82));
}

void ExpectRebuild(ScriptedPrompter& prompts) {
    prompts.expectMessage(LoadText(133), Buttons::Ok, Icon::Information, {}, Answer::Ok);
}
