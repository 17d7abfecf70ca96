// "Old Movie": scratches, dust and flicker of aged film over the slide.
#pragma once

#include <array>

#include "effects/OverlayEffect.h"

namespace quillet {

class OldMovieEffect : public OverlayEffect {
public:
    OldMovieEffect();

    // The parts of the film look (scratch line, dust dots, ...) defined
    // alongside the sprite; all 0 until defined in the movie being written.
    std::array<uint16_t, 3> partIds{};

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
};

}  // namespace quillet
