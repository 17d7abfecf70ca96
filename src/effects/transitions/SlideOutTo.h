// "Slide Out To": the outgoing slide moves and scales away to an offset.
#pragma once

#include "effects/transitions/SlideMove.h"

namespace quillet {

class SlideOutToTransition : public TransitionClass<SlideOutToTransition, SlideMoveTransition> {
public:
    SlideOutToTransition();
};

}  // namespace quillet
