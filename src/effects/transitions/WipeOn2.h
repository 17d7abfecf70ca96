// "Wipe On 2": the options of "Wipe On" with frames of its own.
#pragma once

#include "effects/transitions/WipeOn.h"

namespace quillet {

class WipeOn2Transition : public TransitionClass<WipeOn2Transition, WipeOnTransition> {
public:
    WipeOn2Transition();
};

}  // namespace quillet
