#include "effects/transitions/SpinOut.h"

namespace quillet {

SpinOutTransition::SpinOutTransition() : TransitionClass("Spin Out") {}

}  // namespace quillet
