// "Push": the incoming slide pushes the outgoing one off the stage.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class PushTransition : public TransitionClass<PushTransition> {
public:
    PushTransition();
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
