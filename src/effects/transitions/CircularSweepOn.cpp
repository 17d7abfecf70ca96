#include "effects/transitions/CircularSweepOn.h"

namespace quillet {

CircularSweepOnTransition::CircularSweepOnTransition() : TransitionClass("Circular Sweep On") {}

}  // namespace quillet
