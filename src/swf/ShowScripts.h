// The scripts whose content the show fixes: the play/pause functions that the
// playback controls call, the playing flag, and the per-slide counter.
#pragma once

#include <string>

#include "swf/SwfAction.h"

namespace quillet {

// Names used between the show's scripts and its controls.
inline constexpr const char* kShowPlayFunction = "slideshow_play";
inline constexpr const char* kShowPauseFunction = "slideshow_pause";
inline constexpr const char* kShowPlayingVariable = "slideshow_playing";
inline constexpr const char* kShowPlayPauseButton = "show_controls/playpause_btn";
inline constexpr const char* kCurrentSlideVariable = "current_slide_index";

// Appends: DefineFunction "slideshow_play" (playing flag "1", the play/pause
// button to its frame 1, the main timeline plays), DefineFunction
// "slideshow_pause" (flag "0", button to frame 0, the main timeline stops),
// then slideshow_playing = "1" so that the movie starts playing.
void AppendShowFunctions(SwfActionList& actions);
// Appends current_slide_index = slideNumber (the name and the number pushed as strings).
void AppendSetCurrentSlide(SwfActionList& actions, int slideNumber);

}  // namespace quillet
