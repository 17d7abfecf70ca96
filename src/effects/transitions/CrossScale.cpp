#include "effects/transitions/CrossScale.h"

namespace quillet {

CrossScaleTransition::CrossScaleTransition() : TransitionClass("Cross Scale") {}

}  // namespace quillet
