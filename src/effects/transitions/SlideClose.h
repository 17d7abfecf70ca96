// "Slide Close": the two halves (or four corners) of the incoming slide slide in and close over the outgoing one.
#pragma once

#include "effects/transitions/SlideSplit.h"

namespace quillet {

class SlideCloseTransition : public TransitionClass<SlideCloseTransition, SlideSplitTransition> {
public:
    SlideCloseTransition();
};

}  // namespace quillet
