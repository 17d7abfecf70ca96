#include "effects/transitions/SpinIn.h"

namespace quillet {

SpinInTransition::SpinInTransition() : TransitionClass("Spin In", true) {}

}  // namespace quillet
