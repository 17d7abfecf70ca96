// The options shared by "Blinds In" and "Blinds Out": a direction and the
// number of slats (not saved).
#pragma once

#include "effects/Transition.h"

namespace quillet {

class BlindsTransition : public Transition {
public:
    int32_t direction() const { return options().Int(0); }
    int32_t count() const { return options().Int(1); }  // not saved

protected:
    explicit BlindsTransition(std::string name);
};

}  // namespace quillet
