#include "effects/transitions/SlideClose.h"

namespace quillet {

SlideCloseTransition::SlideCloseTransition() : TransitionClass("Slide Close", true) {}

}  // namespace quillet
