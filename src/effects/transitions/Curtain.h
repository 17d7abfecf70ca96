// "Curtain": the outgoing slide parts like a stage curtain.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class CurtainTransition : public TransitionClass<CurtainTransition> {
public:
    CurtainTransition();
};

}  // namespace quillet
