// "Blur In": the incoming slide comes into focus over the outgoing one.
#pragma once

#include "effects/transitions/Blur.h"

namespace quillet {

class BlurInTransition : public TransitionClass<BlurInTransition, BlurTransition> {
public:
    BlurInTransition();
};

}  // namespace quillet
