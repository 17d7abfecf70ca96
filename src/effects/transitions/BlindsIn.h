// "Blinds In": venetian blinds open, slat by slat, onto the incoming slide.
#pragma once

#include "effects/transitions/Blinds.h"

namespace quillet {

class BlindsInTransition : public TransitionClass<BlindsInTransition, BlindsTransition> {
public:
    BlindsInTransition();
};

}  // namespace quillet
