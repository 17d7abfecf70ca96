// "Cross Scale": the outgoing slide shrinks away while the incoming one grows in.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CrossScaleTransition : public TransitionClass<CrossScaleTransition> {
public:
    CrossScaleTransition();
};

}  // namespace quillet
