// Invisible buttons, and the stage-sized ones of the show: the gate that holds a show stopped on
// its first slide until a click, and the show-wide click action.
#pragma once

#include <memory>

#include "effects/SlideRender.h"
#include "model/SwfData.h"
#include "swf/SwfAction.h"

namespace quillet {

class DefineButton2Tag;

// Defines an invisible button whose hit area is `area` (twips) and whose
// release runs `onRelease` (two ids: the hit shape, the button); the caller
// adds the button tag and places it.
std::unique_ptr<DefineButton2Tag> InvisibleButton(MovieContext& ctx, const SwfRect& area, SwfActionList&& onRelease);

// Defines the gate clip and places it at a fresh depth in the current frame.
// Takes three ids (hit shape, button, clip) and one depth. With controls the
// gate also opens (goes to its empty frame) on the first frame after the
// show was marked started by the play control.
void WriteStartGate(MovieContext& ctx, bool controls);
// Defines a button over the whole stage that runs `action` on release and
// places it at a fresh depth. Takes two ids and one depth.
void WriteClickButton(MovieContext& ctx, const SwfData::UrlAction& action);

}  // namespace quillet
