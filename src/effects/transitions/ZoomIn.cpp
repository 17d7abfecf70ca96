#include "effects/transitions/ZoomIn.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

ZoomInTransition::ZoomInTransition() : TransitionClass("Zoom In", kZoomOptions) {}

}  // namespace quillet
