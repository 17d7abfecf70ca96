// "Window": a shaped window (square, rectangle, circle, star, diamond) closes
// over the outgoing slide or opens onto the incoming one, optionally turning.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class WindowTransition : public TransitionClass<WindowTransition> {
public:
    WindowTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

    int32_t type() const { return options().Int(0); }           // `type`: the shape, closing or opening
    bool spin() const { return options().Bool(1); }              // not saved
    float spinCount() const { return options().Float(2); }       // not saved
    bool spinClockwise() const { return options().Bool(3); }     // not saved
};

}  // namespace quillet
