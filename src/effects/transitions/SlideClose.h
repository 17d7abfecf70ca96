// "Slide Close": the two halves (or corners) of the incoming slide slide in and close over the outgoing one.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class SlideCloseTransition : public TransitionClass<SlideCloseTransition, DirectionTransition> {
public:
    SlideCloseTransition();
};

}  // namespace quillet
