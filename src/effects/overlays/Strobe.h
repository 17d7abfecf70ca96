// "Strobe": a flashing light over the slide.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class StrobeEffect : public OverlayEffect {
public:
    StrobeEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
};

}  // namespace quillet
