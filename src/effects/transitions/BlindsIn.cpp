#include "effects/transitions/BlindsIn.h"

namespace quillet {

BlindsInTransition::BlindsInTransition() : TransitionClass("Blinds In", true) {}

}  // namespace quillet
