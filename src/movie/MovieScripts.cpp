#include "movie/MovieScripts.h"

#include <algorithm>

#include "model/SlideShow.h"
#include "movie/ControlSets.h"
#include "swf/ShowScripts.h"
#include "swf/SwfActions.h"

namespace quillet {

namespace {

size_t ByteSize(const SwfActionList& list) { return list.ByteSize(0, list.size()); }

bool IsWindowOrLevel(const std::string& target) {
    return target.empty() || target[0] == '_';  // _level1, _blank, _self, _parent, _top
}

}  // namespace

// if (top of stack) body else orElse, laid out as
//   If over orElse and the jump ; orElse ; Jump over body ; body
void AppendIfElse(SwfActionList& list, SwfActionList&& body, SwfActionList&& orElse) {
    const size_t bodySize = ByteSize(body);
    ActionJump jump(0);
    list.Emplace<ActionIf>(static_cast<int16_t>(ByteSize(orElse) + jump.RecordSize()));
    list.Append(std::move(orElse));
    list.Emplace<ActionJump>(static_cast<int16_t>(bodySize));
    list.Append(std::move(body));
}

// Stops the timeline the actions run on; with controls, through
// slideshow_pause so that the play/pause button shows "play".
void AppendStop(SwfActionList& list, bool controls) {
    if (controls) {
        list.Emplace<ActionPush>().Integer(0).String(kShowPauseFunction);
        list.Emplace<ActionCallFunction>();
        list.Emplace<ActionPop>();
    } else {
        list.Emplace<ActionStop>();
    }
}

void AppendPlay(SwfActionList& list, bool controls) {
    if (controls) {
        list.Emplace<ActionPush>().Integer(0).String(kShowPlayFunction);
        list.Emplace<ActionCallFunction>();
        list.Emplace<ActionPop>();
    } else {
        list.Emplace<ActionPlay>();
    }
}

namespace {

// if (n is below `bound` / above it) n = bound, for the jump function's parameter.
void AppendClamp(SwfActionList& list, int bound, bool below) {
    list.Emplace<ActionPush>().String("n");
    list.Emplace<ActionGetVariable>();
    list.Emplace<ActionPush>().Integer(bound);
    if (!below) list.Emplace<ActionStackSwap>();
    list.Emplace<ActionLess2>();
    list.Emplace<ActionNot>();
    SwfActionList set;
    set.Emplace<ActionPush>().String("n").Integer(bound);
    set.Emplace<ActionSetVariable>();
    list.Emplace<ActionIf>(static_cast<int16_t>(ByteSize(set)));
    list.Append(std::move(set));
}

}  // namespace

void AppendJumpFunction(SwfActionList& list, int slideCount) {
    auto& function = list.Emplace<ActionDefineFunction>(kJumpFunction, std::vector<std::string>{"n"});
    SwfActionList& body = function.body;
    body.Emplace<ActionPush>().String("n").String("n");
    body.Emplace<ActionGetVariable>();
    body.Emplace<ActionToInteger>();
    body.Emplace<ActionSetVariable>();
    AppendClamp(body, 1, true);
    AppendClamp(body, std::max(slideCount, 1), false);
    // The label "slide_<n>" stays on the stack for the goto of either branch.
    body.Emplace<ActionPush>().String("slide_");
    body.Emplace<ActionPush>().String("n");
    body.Emplace<ActionGetVariable>();
    body.Emplace<ActionStringAdd>();
    body.Emplace<ActionPush>().String(kShowPlayingVariable);
    body.Emplace<ActionGetVariable>();
    body.Emplace<ActionPush>().String("1");
    body.Emplace<ActionStringEquals>();
    SwfActionList play;
    play.Emplace<ActionGotoFrame2>(true);
    SwfActionList stop;
    stop.Emplace<ActionGotoFrame2>(false);
    AppendIfElse(body, std::move(play), std::move(stop));
}

void AppendUrlAction(SwfActionList& list, const SwfData::UrlAction& action) {
    std::string target = action.target;
    if (action.action == 0) {  // get URL into a browser window
        list.Emplace<ActionGetURL>(action.url, target);
        return;
    }
    if (action.action != 1 && action.action != 2) return;
    // Load or unload: a movie without a target replaces the show itself.
    if (target.empty()) target = "_level0";
    const std::string url = action.action == 1 ? action.url : std::string();
    if (IsWindowOrLevel(target)) {
        list.Emplace<ActionGetURL>(url, target);
    } else {
        list.Emplace<ActionPush>().String(url).String(target);
        list.Emplace<ActionGetURL2>(ActionGetURL2::None, true, false);
    }
}

SwfActionList BuildStartScript(const SlideShow& show, bool controls) {
    SwfActionList list;
    if (controls) {
        AppendShowFunctions(list);
        AppendJumpFunction(list, show.count());
    }
    // The counter is set here, on a frame the loop never comes back to.
    if (show.swfData.loop == SwfData::Loop::Times) {
        list.Emplace<ActionPush>().String(kLoopCounterVariable).Integer(0);
        list.Emplace<ActionSetVariable>();
    }
    return list;
}

int StartPauseFrames(const SlideShow& show) {
    if (show.swfData.movieStartAction != SwfData::StartAction::PlayAfterPause) return 0;
    if (show.swfData.pauseTime <= 0) return 0;
    return static_cast<int>(static_cast<uint32_t>(show.swfData.pauseTime) * 0.001 * show.fps + 0.5);
}

SwfActionList BuildGateScript(bool controls) {
    SwfActionList list;
    list.Emplace<ActionSetTarget>("_root");
    list.Emplace<ActionPush>().String(kStartedVariable);
    list.Emplace<ActionGetVariable>();
    list.Emplace<ActionSetTarget>("");
    // Started: the empty frame. Else the main timeline and the gate wait.
    SwfActionList started;
    started.Emplace<ActionGotoFrame>(1);
    started.Emplace<ActionStop>();
    SwfActionList waiting;
    waiting.Emplace<ActionSetTarget>("_root");
    AppendStop(waiting, controls);
    waiting.Emplace<ActionSetTarget>("");
    waiting.Emplace<ActionStop>();
    AppendIfElse(list, std::move(started), std::move(waiting));
    return list;
}

SwfActionList BuildGateClick(bool controls) {
    SwfActionList list;
    list.Emplace<ActionSetTarget>("_root");
    list.Emplace<ActionPush>().String(kStartedVariable).Integer(1);
    list.Emplace<ActionSetVariable>();
    AppendPlay(list, controls);
    list.Emplace<ActionSetTarget>("");
    list.Emplace<ActionNextFrame>();
    return list;
}

SwfActionList BuildGateOpenCheck() {
    SwfActionList list;
    list.Emplace<ActionSetTarget>("_root");
    list.Emplace<ActionPush>().String(kStartedVariable);
    list.Emplace<ActionGetVariable>();
    list.Emplace<ActionSetTarget>("");
    list.Emplace<ActionNot>();
    ActionGotoFrame go(1);
    list.Emplace<ActionIf>(static_cast<int16_t>(go.RecordSize()));
    list.Emplace<ActionGotoFrame>(1);
    return list;
}

SwfActionList BuildEndScript(const SlideShow& show, bool controls) {
    SwfActionList list;
    const SwfData& data = show.swfData;
    // The show ends for good: the end action, then it stays on its last frame.
    SwfActionList end;
    // The show's music of a counted loop plays through the passes; it stops here.
    if (data.loop == SwfData::Loop::Times) end.Emplace<ActionStopSounds>();
    if (data.movieEndAction.enable) AppendUrlAction(end, data.movieEndAction);
    AppendStop(end, controls);
    switch (data.loop) {
        case SwfData::Loop::Forever:
            // A show that never ends never runs its end action.
            list.Emplace<ActionGoToLabel>(kFirstSlideLabel);
            list.Emplace<ActionPlay>();
            break;
        case SwfData::Loop::Times: {
            // showloop = showloop + 1; if (showloop < loopCount) gotoAndPlay("slide_1") else end.
            list.Emplace<ActionPush>().String(kLoopCounterVariable).String(kLoopCounterVariable);
            list.Emplace<ActionGetVariable>();
            list.Emplace<ActionIncrement>();
            list.Emplace<ActionSetVariable>();
            list.Emplace<ActionPush>().String(kLoopCounterVariable);
            list.Emplace<ActionGetVariable>();
            list.Emplace<ActionPush>().Integer(data.loopCount);
            list.Emplace<ActionLess2>();
            SwfActionList again;
            again.Emplace<ActionGoToLabel>(kFirstSlideLabel);
            again.Emplace<ActionPlay>();
            AppendIfElse(list, std::move(again), std::move(end));
            break;
        }
        case SwfData::Loop::None:
        default:
            list.Append(std::move(end));
            break;
    }
    return list;
}

}  // namespace quillet
