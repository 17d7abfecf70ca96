// "Snow": flakes fall and swing across the slide.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class SnowEffect : public OverlayEffect {
public:
    SnowEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
};

}  // namespace quillet
