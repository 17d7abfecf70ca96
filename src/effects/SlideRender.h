// What an effect is handed when it writes frames into a movie: the slide as
// the movie knows it (its character, depth and placement) and the movie
// itself with the shared id and depth counters. Effects never reach into the
// show model; the movie assembly fills these in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "swf/SwfRecords.h"

namespace quillet {

class SwfWriter;

// One slide on the stage of the movie being written.
struct SlideOnStage {
    uint16_t characterId = 0;  // the shape showing the slide's picture; 0: nothing to place (blank slide)
    uint16_t depth = 0;        // a transition that needs a mask may move the slide to a fresh depth
    SwfMatrix matrix;          // current placement: 16.16 scale, translation in twips
    int32_t x = 0, y = 0;      // the slide's position on the stage, twips
    int32_t width = 0, height = 0;  // the slide's displayed size, twips
    int number = 0;            // 1-based slide number
    std::string instanceName;  // placed with this instance name when not empty ("sld_%d", "jpegtarget_%d")
};

// The movie being written, as the effects see it.
struct MovieContext {
    SwfWriter& movie;
    float fps;
    // Pre-increment and use the new value. Ids and depths are 16-bit in the
    // file; the counters are wider so that a dry run can tell when a show
    // would run past 65535 (the movie is refused before it is written).
    uint32_t& nextCharacterId;
    uint32_t& nextDepth;

    uint16_t NewCharacterId() { return static_cast<uint16_t>(++nextCharacterId); }
    uint16_t NewDepth() { return static_cast<uint16_t>(++nextDepth); }
    int32_t StageWidth() const;   // twips, from the movie's frame rectangle
    int32_t StageHeight() const;
};

// Places the slide's character at its depth with scale 1.0 and the slide's
// position (resetting its matrix to that), plus an optional colour transform.
// Nothing for a null slide or one without a character.
void PlaceSlide(SlideOnStage* slide, MovieContext& ctx,
                std::optional<SwfColorTransformAlpha> colorTransform = std::nullopt);
// Removes the slide's character from its depth; nothing for a null slide.
void RemoveSlide(const SlideOnStage* slide, MovieContext& ctx);
// A copy of the slide on a fresh depth with its current matrix; returns that
// depth, 0 for a null slide (or one without a character).
uint16_t PlaceSlideCopy(const SlideOnStage* slide, MovieContext& ctx);
// Modifies what is at `depth` to the given opacity (0..1): multipliers 256,
// alpha multiplier trunc(opacity * 256 + 0.5).
void SetOpacity(uint16_t depth, double opacity, MovieContext& ctx);
// Ends the current frame of the movie (one ShowFrame tag).
void EndFrame(MovieContext& ctx);
// For a transition with nothing to draw (a blank slide to uncover): places
// the incoming slide, lets `frames` frames pass and removes the outgoing one,
// so the show keeps its timing.
bool PassFrames(SlideOnStage* incoming, SlideOnStage* outgoing, int frames, MovieContext& ctx);

}  // namespace quillet
