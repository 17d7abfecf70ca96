#include "effects/transitions/ZoomIn.h"

namespace quillet {

ZoomInTransition::ZoomInTransition() : TransitionClass("Zoom In", true) {}

}  // namespace quillet
