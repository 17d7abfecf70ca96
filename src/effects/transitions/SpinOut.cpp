#include "effects/transitions/SpinOut.h"

namespace quillet {

SpinOutTransition::SpinOutTransition() : TransitionClass("Spin Out", false) {}

}  // namespace quillet
