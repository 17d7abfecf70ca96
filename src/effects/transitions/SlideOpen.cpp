#include "effects/transitions/SlideOpen.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

SlideOpenTransition::SlideOpenTransition() : TransitionClass("Slide Open", kSlideCloseOptions) {}

}  // namespace quillet
