// "Color Fade": the stage fades to a solid colour, the slides change under
// it, and the colour fades away again.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class ColorFadeTransition : public TransitionClass<ColorFadeTransition> {
public:
    ColorFadeTransition();

    // Lowest byte red, then green, then blue; saved as an unsigned decimal.
    uint32_t fadeColor() const { return options().Color(0); }

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
