// The show-wide scripts of the main timeline: the first frame's script
// (play/pause functions, the loop counter), the start gate of a show that
// waits for a click, the show's click action and the end-of-show script
// (loop, end action).
#pragma once

#include "model/SwfData.h"
#include "swf/SwfAction.h"

namespace quillet {

class SlideShow;

// Names shared by the scripts below.
inline constexpr const char* kLoopCounterVariable = "showloop";
inline constexpr const char* kStartedVariable = "showstarted";
inline constexpr const char* kFirstSlideLabel = "slide_1";

// Defines slideshow_goto(n) for the controls' previous/next/first/last
// buttons: n made a whole number within 1..slideCount, then the main
// timeline goes to "slide_<n>", playing when slideshow_playing is "1", else
// stopped there.
void AppendJumpFunction(SwfActionList& list, int slideCount);
// Actions of the first frame. `controls`: the playback controls are on (the
// play/pause functions and slideshow_goto are defined).
SwfActionList BuildStartScript(const SlideShow& show, bool controls);
// Frames to wait on the first frame before the show plays (play after pause):
// trunc(ms * 0.001 * fps + 0.5), so rounded where a slide's hold is truncated.
int StartPauseFrames(const SlideShow& show);
// Actions of the last frame.
SwfActionList BuildEndScript(const SlideShow& show, bool controls);

// The start gate is a two-frame clip placed on the first slide's first full
// frame. Its frame 1 holds a stage-sized button; its script stops the main
// timeline there unless the show has been started already (a loop coming
// back to "slide_1"), in which case the gate goes straight to its empty
// frame 2.
SwfActionList BuildGateScript(bool controls);
// The gate button's release: mark the show started, play the main timeline,
// take the gate to its empty frame.
SwfActionList BuildGateClick(bool controls);

// if (top of stack) body else orElse.
void AppendIfElse(SwfActionList& list, SwfActionList&& body, SwfActionList&& orElse);
// Stops / plays the timeline the actions run on; with controls, through the
// show's pause / play functions so that the play/pause button follows.
void AppendStop(SwfActionList& list, bool controls);
void AppendPlay(SwfActionList& list, bool controls);

// The gate's check on every frame (with controls): once the show is marked
// started, go to the empty frame.
SwfActionList BuildGateOpenCheck();

// getURL / loadMovie / unloadMovie as the click and end actions use them. A
// target naming a level or a browser window goes in GetURL; any other names
// a clip, which GetURL2 loads into.
void AppendUrlAction(SwfActionList& list, const SwfData::UrlAction& action);

}  // namespace quillet
