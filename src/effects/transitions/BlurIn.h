// "Blur In": the incoming slide comes into focus over the outgoing one.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class BlurInTransition : public TransitionClass<BlurInTransition> {
public:
    BlurInTransition();
};

}  // namespace quillet
