// "Blur Out": the outgoing slide blurs away, uncovering the incoming one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class BlurOutTransition : public TransitionClass<BlurOutTransition> {
public:
    BlurOutTransition();
};

}  // namespace quillet
