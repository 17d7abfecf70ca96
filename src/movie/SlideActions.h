// What a slide does when it is clicked or first shown.
//
// A slide with a click action gets an invisible button over its picture,
// placed on the slide's first full frame (after its transition) and removed
// as the next slide's transition starts. Jumps go to the "slide_%d" label,
// so the slide jumped to appears at once, without its transition; they play
// on from there unless the action pauses the show. With the playback
// controls on, playing and pausing go through the show's functions, so the
// play/pause button follows.
//
// A URL opened "in the popup window" calls the page's HG_Popup script
// function with the slide's window features; the window is named "sld_%d".
// "load movie" into a browser window name (_self, _blank...) replaces the
// show (_level0): a movie cannot be loaded into a browser window.
//
// "load URL on display" opens its URL the first time the slide is shown in
// a run of the movie; a loop back does not open it again.
#pragma once

#include <cstdint>
#include <string>

#include "effects/SlideRender.h"
#include "swf/SwfAction.h"

namespace quillet {

struct ClickAction;
struct PopupWindow;

struct SlideActionInput {
    const ClickAction* action = nullptr;
    const PopupWindow* popup = nullptr;
    int index = 0;       // 1-based
    int slideCount = 0;
    bool controls = false;  // the playback controls are on
};

// The button's script.
SwfActionList BuildSlideClick(const SlideActionInput& in);
// The address that opens `url` in the popup window:
// "javascript:HG_Popup('url','sld_3','width=...')".
std::string PopupUrl(const std::string& url, const PopupWindow& popup, int index);
// Defines the button over `slide` (two ids) and places it at a fresh depth;
// returns that depth, 0 when the slide has no click action.
uint16_t WriteSlideClick(MovieContext& ctx, const SlideOnStage& slide, const SlideActionInput& in);
// The "load URL on display" script into the current frame; nothing when off.
void WriteDisplayUrl(MovieContext& ctx, const SlideActionInput& in);

}  // namespace quillet
