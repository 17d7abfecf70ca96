#include "effects/transitions/SlideOutTo.h"

namespace quillet {

SlideOutToTransition::SlideOutToTransition() : TransitionClass("Slide Out To", false) {}

}  // namespace quillet
