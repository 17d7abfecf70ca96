#include "swf/ShowScripts.h"

#include "swf/SwfActions.h"

namespace quillet {

namespace {

// Sets the playing flag, moves the play/pause button to `buttonFrame` and
// then plays or stops the main timeline.
void AppendPlayPause(SwfActionList& actions, const char* name, const char* flag, uint16_t buttonFrame, bool play) {
    auto& function = actions.Emplace<ActionDefineFunction>(name);
    SwfActionList& body = function.body;
    body.SetVariable(kShowPlayingVariable, flag);
    body.Emplace<ActionSetTarget>(kShowPlayPauseButton);
    body.Emplace<ActionGotoFrame>(buttonFrame);
    body.Emplace<ActionPlay>();
    body.Emplace<ActionSetTarget>("");
    if (play) body.Emplace<ActionPlay>();
    else body.Emplace<ActionStop>();
}

}  // namespace

void AppendShowFunctions(SwfActionList& actions) {
    AppendPlayPause(actions, kShowPlayFunction, "1", 1, true);
    AppendPlayPause(actions, kShowPauseFunction, "0", 0, false);
    actions.SetVariable(kShowPlayingVariable, "1");
}

void AppendSetCurrentSlide(SwfActionList& actions, int slideNumber) {
    actions.SetVariable(kCurrentSlideVariable, std::to_string(slideNumber));
}

}  // namespace quillet
