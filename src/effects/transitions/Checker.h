// "Checker": the incoming slide appears cell by cell on a checkerboard, in a
// chosen cell animation and order.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CheckerTransition : public TransitionClass<CheckerTransition> {
public:
    CheckerTransition();

    int32_t type() const { return options().Int(0); }        // appear, fade_in, zoom_in, drop_left/right/up/down/random
    int32_t direction() const { return options().Int(1); }   // the order in which the cells come on
    int32_t cellWidth() const { return options().Int(2); }   // twips, not saved
    int32_t cellHeight() const { return options().Int(3); }  // twips, not saved
};

}  // namespace quillet
