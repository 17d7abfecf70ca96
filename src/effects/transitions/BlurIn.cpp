#include "effects/transitions/BlurIn.h"

namespace quillet {

BlurInTransition::BlurInTransition() : TransitionClass("Blur In", true) {}

}  // namespace quillet
