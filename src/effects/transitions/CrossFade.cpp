#include "effects/transitions/CrossFade.h"

namespace quillet {

CrossFadeTransition::CrossFadeTransition() : TransitionClass("Cross Fade") {}

}  // namespace quillet
