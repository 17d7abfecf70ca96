// "Circular Sweep On": a mask sweeping round the centre uncovers the incoming slide.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CircularSweepOnTransition : public TransitionClass<CircularSweepOnTransition> {
public:
    CircularSweepOnTransition();
};

}  // namespace quillet
