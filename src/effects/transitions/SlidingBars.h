// "Sliding Bars": the incoming slide arrives in bars that slide into place.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class SlidingBarsTransition : public TransitionClass<SlidingBarsTransition> {
public:
    SlidingBarsTransition();

    int32_t direction() const { return options().Int(0); }
    int32_t barCount() const { return options().Int(1); }  // not saved
};

}  // namespace quillet
