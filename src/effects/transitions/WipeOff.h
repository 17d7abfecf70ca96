// "Wipe Off": the outgoing slide is wiped off the stage, uncovering the incoming one.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class WipeOffTransition : public TransitionClass<WipeOffTransition, DirectionTransition> {
public:
    WipeOffTransition();
};

}  // namespace quillet
