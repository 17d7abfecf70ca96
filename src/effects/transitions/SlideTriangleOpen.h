// "Slide Triangle Open": the outgoing slide splits along a diagonal (or into
// corner triangles) that slide apart, uncovering the incoming one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SlideTriangleOpenTransition : public TransitionClass<SlideTriangleOpenTransition> {
public:
    SlideTriangleOpenTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
