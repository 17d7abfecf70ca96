#include "effects/transitions/ZoomOut.h"

namespace quillet {

ZoomOutTransition::ZoomOutTransition() : TransitionClass("Zoom Out", false) {}

}  // namespace quillet
