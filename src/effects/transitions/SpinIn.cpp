#include "effects/transitions/SpinIn.h"

namespace quillet {

SpinInTransition::SpinInTransition() : TransitionClass("Spin In") {}

}  // namespace quillet
