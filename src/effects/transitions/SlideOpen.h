// "Slide Open": the outgoing slide splits and slides open, uncovering the incoming one.
#pragma once

#include "effects/transitions/SlideSplit.h"

namespace quillet {

class SlideOpenTransition : public TransitionClass<SlideOpenTransition, SlideSplitTransition> {
public:
    SlideOpenTransition();
};

}  // namespace quillet
