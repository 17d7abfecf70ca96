// "Blinds Out": venetian blinds close over the outgoing slide, uncovering the incoming one.
#pragma once

#include "effects/transitions/Blinds.h"

namespace quillet {

class BlindsOutTransition : public TransitionClass<BlindsOutTransition, BlindsTransition> {
public:
    BlindsOutTransition();
};

}  // namespace quillet
