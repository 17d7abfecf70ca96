// "Push": the incoming slide pushes the outgoing one off the stage.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class PushTransition : public TransitionClass<PushTransition, DirectionTransition> {
public:
    PushTransition();
};

}  // namespace quillet
