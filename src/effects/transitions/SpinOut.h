// "Spin Out": a copy of the outgoing slide shrinks to nothing while turning.
#pragma once

#include "effects/transitions/Spin.h"

namespace quillet {

class SpinOutTransition : public TransitionClass<SpinOutTransition, SpinTransition> {
public:
    SpinOutTransition();
};

}  // namespace quillet
