#include "effects/transitions/SlideClose.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

SlideCloseTransition::SlideCloseTransition() : TransitionClass("Slide Close", kSlideCloseOptions) {}

}  // namespace quillet
