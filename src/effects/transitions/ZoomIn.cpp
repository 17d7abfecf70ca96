#include "effects/transitions/ZoomIn.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

ZoomInTransition::ZoomInTransition() : TransitionClass("Zoom In", kZoomDirection) {}

}  // namespace quillet
