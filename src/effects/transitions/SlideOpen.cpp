#include "effects/transitions/SlideOpen.h"

namespace quillet {

SlideOpenTransition::SlideOpenTransition() : TransitionClass("Slide Open", false) {}

}  // namespace quillet
