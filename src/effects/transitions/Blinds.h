// The options shared by "Blinds In" and "Blinds Out": a direction and the
// number of slats (not saved).
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class BlindsTransition : public DirectionTransition {
public:
    static constexpr int32_t kDefaultCount = 20;

    int32_t count = kDefaultCount;  // not saved

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;

protected:
    explicit BlindsTransition(std::string name);
};

}  // namespace quillet
