#include "effects/transitions/WipeOn2.h"

namespace quillet {

WipeOn2Transition::WipeOn2Transition() : TransitionClass("Wipe On 2") {}

}  // namespace quillet
