#include "effects/transitions/BlurOut.h"

namespace quillet {

BlurOutTransition::BlurOutTransition() : TransitionClass("Blur Out", false) {}

}  // namespace quillet
