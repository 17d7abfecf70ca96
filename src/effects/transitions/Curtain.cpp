#include "effects/transitions/Curtain.h"

namespace quillet {

CurtainTransition::CurtainTransition() : TransitionClass("Curtain") {}

}  // namespace quillet
