#include "effects/transitions/BlindsOut.h"

namespace quillet {

BlindsOutTransition::BlindsOutTransition() : TransitionClass("Blinds Out", false) {}

}  // namespace quillet
