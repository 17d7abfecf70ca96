// "Wipe Off": the outgoing slide is wiped off the stage, uncovering the incoming one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class WipeOffTransition : public TransitionClass<WipeOffTransition> {
public:
    WipeOffTransition();
    int32_t direction() const { return options().Int(0); }

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
