// "Blur In": the incoming slide comes into focus over the outgoing one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class BlurInTransition : public TransitionClass<BlurInTransition> {
public:
    BlurInTransition();
};

}  // namespace quillet
