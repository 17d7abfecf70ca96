// "Spin In": the incoming slide grows from nothing to full size while turning.
#pragma once

#include "effects/transitions/Spin.h"

namespace quillet {

class SpinInTransition : public TransitionClass<SpinInTransition, SpinTransition> {
public:
    SpinInTransition();
};

}  // namespace quillet
