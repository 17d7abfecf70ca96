// "Sliding Bars": the incoming slide arrives in bars that slide into place.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class SlidingBarsTransition : public TransitionClass<SlidingBarsTransition, DirectionTransition> {
public:
    static constexpr int32_t kDefaultBarCount = 10;

    SlidingBarsTransition();

    int32_t barCount = kDefaultBarCount;  // not saved

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
};

}  // namespace quillet
