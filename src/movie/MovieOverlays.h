// The overlay effects of the movie being written. Each effect is defined
// once per movie, the first time a slide uses it (looked up by its exact
// name), and placed over every slide that uses it: after the slide's
// transition, on the slide's first full frame, above the picture and below
// that slide's captions. It is removed as the next slide's transition starts
// (the incoming slide would cover it during the transition anyway), so every
// slide starts its effect afresh.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "effects/OverlayEffect.h"

namespace quillet {

struct MovieContext;

class MovieOverlays {
public:
    // Defines the effect if the movie lacks one of its name, and places it at
    // a fresh depth; nothing for an effect that draws nothing.
    void Show(const OverlayEffect& effect, MovieContext& ctx);
    // Removes the effect shown, if any.
    void Remove(MovieContext& ctx);

private:
    std::vector<std::unique_ptr<OverlayEffect>> defined_;
    uint16_t shownDepth_ = 0;
};

}  // namespace quillet
