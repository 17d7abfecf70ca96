// The show-wide scripts of the main timeline: the first frame's script
// (play/pause functions, the start action) and the end-of-show script
// (loop, end action).
#pragma once

#include "swf/SwfAction.h"

namespace quillet {

class SlideShow;

// Actions of the first frame. `controls`: the playback controls are on.
SwfActionList BuildStartScript(const SlideShow& show, bool controls);
// Frames to wait on the first frame before the show plays (play after pause).
int StartPauseFrames(const SlideShow& show);
// Actions of the last frame.
SwfActionList BuildEndScript(const SlideShow& show, bool controls);

}  // namespace quillet
