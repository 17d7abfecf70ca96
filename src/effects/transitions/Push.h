// "Push": the incoming slide pushes the outgoing one off the stage.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class PushTransition : public TransitionClass<PushTransition> {
public:
    PushTransition();
    int32_t direction() const { return options().Int(0); }

    // Both slides travel one stage width and/or height the way the direction
    // names (further if the outgoing one is larger than the stage), that far
    // apart, so the incoming one ends exactly in place.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
