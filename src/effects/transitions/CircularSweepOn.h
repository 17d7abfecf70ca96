// "Circular Sweep On": a mask sweeping round the centre uncovers the incoming slide.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CircularSweepOnTransition : public TransitionClass<CircularSweepOnTransition> {
public:
    CircularSweepOnTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
