// "Slide Close": the two halves (or corners) of the incoming slide slide in and close over the outgoing one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SlideCloseTransition : public TransitionClass<SlideCloseTransition> {
public:
    SlideCloseTransition();
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
