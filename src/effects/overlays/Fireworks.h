// "Fireworks": bursts of sparks over the slide.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class FireworksEffect : public OverlayEffect {
public:
    FireworksEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
    // Placed without a matrix: the bursts are laid out in stage pixels already.
    void Place(MovieContext& ctx, uint16_t depth) const override;
};

}  // namespace quillet
