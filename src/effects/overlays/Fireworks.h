// "Fireworks": bursts of sparks over the slide.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class FireworksEffect : public OverlayEffect {
public:
    FireworksEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
};

}  // namespace quillet
