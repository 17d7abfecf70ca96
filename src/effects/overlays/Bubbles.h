// "Bubbles": bubbles rise over the slide, sized to the stage.
#pragma once

#include "effects/OverlayEffect.h"

namespace quillet {

class BubblesEffect : public OverlayEffect {
public:
    BubblesEffect();

    std::unique_ptr<OverlayEffect> Create() const override;
    bool IsNone() const override { return false; }
    void Define(MovieContext& ctx) override;
};

}  // namespace quillet
