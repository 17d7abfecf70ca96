// "Blur Out": the outgoing slide blurs away, uncovering the incoming one.
#pragma once

#include "effects/transitions/Blur.h"

namespace quillet {

class BlurOutTransition : public TransitionClass<BlurOutTransition, BlurTransition> {
public:
    BlurOutTransition();
};

}  // namespace quillet
