// "Slide Open": the outgoing slide splits and slides open, uncovering the incoming one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SlideOpenTransition : public TransitionClass<SlideOpenTransition> {
public:
    SlideOpenTransition();
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
