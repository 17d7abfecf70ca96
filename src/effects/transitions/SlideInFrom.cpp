#include "effects/transitions/SlideInFrom.h"

namespace quillet {

SlideInFromTransition::SlideInFromTransition() : TransitionClass("Slide In From", true) {}

}  // namespace quillet
