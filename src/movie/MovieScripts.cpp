#include "movie/MovieScripts.h"

#include "model/SlideShow.h"
#include "swf/ShowScripts.h"
#include "swf/SwfActions.h"

namespace quillet {

namespace {

void PushStrings(SwfActionList& list, std::initializer_list<const char*> values) {
    auto& push = list.Emplace<ActionPush>();
    for (const char* v : values) push.values.push_back(SwfPushValue::MakeString(v));
}

// getURL / loadMovie / unloadMovie as the end and click actions use them.
void AppendUrlAction(SwfActionList& list, const SwfData::UrlAction& action, bool allowUnload) {
    switch (action.action) {
        case 0:  // get URL into a browser window
            list.Emplace<ActionGetURL>(action.url, action.target);
            break;
        case 1:  // load a movie into a level or clip
            list.Emplace<ActionGetURL>(action.url, action.target.empty() ? "_level0" : action.target);
            break;
        case 2:
            if (allowUnload) list.Emplace<ActionGetURL>("", action.target.empty() ? "_level0" : action.target);
            break;
        default:
            break;
    }
}

}  // namespace

SwfActionList BuildStartScript(const SlideShow& show, bool controls) {
    SwfActionList list;
    if (controls) AppendShowFunctions(list);
    if (show.swfData.movieStartAction == SwfData::StartAction::StopOnFirstFrame) {
        list.Emplace<ActionStop>();
        if (controls) {
            // The controls show "play" while the show waits for a click.
            auto& push = list.Emplace<ActionPush>();
            push.values.push_back(SwfPushValue::MakeInteger(0));
            push.values.push_back(SwfPushValue::MakeString(kShowPauseFunction));
            list.Emplace<ActionCallFunction>();
            list.Emplace<ActionPop>();
        }
    }
    return list;
}

int StartPauseFrames(const SlideShow& show) {
    if (show.swfData.movieStartAction != SwfData::StartAction::PlayAfterPause) return 0;
    if (show.swfData.pauseTime <= 0) return 0;
    return static_cast<int>(static_cast<uint32_t>(show.swfData.pauseTime) * 0.001 * show.fps + 0.5);
}

SwfActionList BuildEndScript(const SlideShow& show, bool controls) {
    SwfActionList list;
    const SwfData& data = show.swfData;
    if (data.movieEndAction.enable) AppendUrlAction(list, data.movieEndAction, true);
    switch (data.loop) {
        case SwfData::Loop::Forever:
            list.Emplace<ActionGoToLabel>("slide_1");
            list.Emplace<ActionPlay>();
            break;
        case SwfData::Loop::Times: {
            // showloop counts the plays so far: showloop = showloop + 1;
            // if (showloop < loopCount) gotoAndPlay("slide_1") else stop().
            PushStrings(list, {"showloop", "showloop"});
            list.Emplace<ActionGetVariable>();
            list.Emplace<ActionIncrement>();
            list.Emplace<ActionSetVariable>();
            PushStrings(list, {"showloop"});
            list.Emplace<ActionGetVariable>();
            auto& push = list.Emplace<ActionPush>();
            push.values.push_back(SwfPushValue::MakeInteger(data.loopCount));
            list.Emplace<ActionLess2>();
            list.Emplace<ActionNot>();
            // Skip the two-record "go to slide 1 and play" branch when done.
            ActionGoToLabel go("slide_1");
            ActionPlay play;
            ActionJump jump(0);
            auto skip = static_cast<int16_t>(go.RecordSize() + play.RecordSize() + jump.RecordSize());
            list.Emplace<ActionIf>(skip);
            list.Emplace<ActionGoToLabel>("slide_1");
            list.Emplace<ActionPlay>();
            ActionStop stop;
            list.Emplace<ActionJump>(static_cast<int16_t>(stop.RecordSize()));
            list.Emplace<ActionStop>();
            break;
        }
        case SwfData::Loop::None:
        default:
            if (controls) {
                auto& push = list.Emplace<ActionPush>();
                push.values.push_back(SwfPushValue::MakeInteger(0));
                push.values.push_back(SwfPushValue::MakeString(kShowPauseFunction));
                list.Emplace<ActionCallFunction>();
                list.Emplace<ActionPop>();
            }
            list.Emplace<ActionStop>();
            break;
    }
    return list;
}

}  // namespace quillet
