#include "effects/transitions/ZoomOut.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

ZoomOutTransition::ZoomOutTransition() : TransitionClass("Zoom Out", kZoomOptions) {}

}  // namespace quillet
