// "Wipe On": a moving mask uncovers the incoming slide over the outgoing one,
// from a side, a corner or along a diagonal.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class WipeOnTransition : public TransitionClass<WipeOnTransition, DirectionTransition> {
public:
    WipeOnTransition();

protected:
    // For "Wipe On 2", which keeps these options and draws its own frames.
    explicit WipeOnTransition(std::string name);
};

}  // namespace quillet
