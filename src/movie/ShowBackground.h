// What lies around the slides for the whole show: the background picture
// behind them, and above them the decorative frame with, outside the show's
// visible rectangle, a cover in the background colour.
//
// Both are placed once, before the first slide, and never removed, so a loop
// back to the first slide finds them still there. The picture takes a depth
// from the shared counter ahead of every slide, so every slide lies above
// it; the frame sits at kStageFrameDepth, above every slide, the overlay
// effects and the slides' captions, and below the show's playback and mute
// controls (65535, 65534).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "effects/SlideRender.h"
#include "movie/BitmapCharacter.h"

namespace quillet {

class SlideShow;

inline constexpr uint16_t kStageFrameDepth = 65533;

// The decoded pictures of the background and the frame, made once per
// export (the movie's dry run and the real write both use them).
struct ShowBackdrop {
    BitmapCharacter image;    // the background picture; ok false when there is none
    BitmapCharacter pattern;  // the frame's pattern tile; ok false when the frame has none
    // A picture that cannot be used, naming the file; the show goes on without it.
    std::vector<std::string> warnings;
};

ShowBackdrop PrepareBackdrop(const SlideShow& show);
// Defines and places the background picture (two ids, one depth) and the
// frame (up to two ids, at kStageFrameDepth); nothing for a show without them.
void WriteBackdrop(MovieContext& ctx, const SlideShow& show, const ShowBackdrop& backdrop);

}  // namespace quillet
