// "Slide In From": the incoming slide moves and scales into place from an offset.
#pragma once

#include "effects/transitions/SlideMove.h"

namespace quillet {

class SlideInFromTransition : public TransitionClass<SlideInFromTransition, SlideMoveTransition> {
public:
    SlideInFromTransition();
};

}  // namespace quillet
