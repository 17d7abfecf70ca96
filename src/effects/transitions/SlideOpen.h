// "Slide Open": the outgoing slide splits and slides open, uncovering the incoming one.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class SlideOpenTransition : public TransitionClass<SlideOpenTransition, DirectionTransition> {
public:
    SlideOpenTransition();
};

}  // namespace quillet
