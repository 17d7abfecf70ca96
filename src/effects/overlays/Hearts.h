// "Hearts": hearts float over the slide.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class HeartsEffect : public OverlayEffect {
public:
    HeartsEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
};

}  // namespace quillet
