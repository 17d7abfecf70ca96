#include "effects/transitions/PageFlip.h"

namespace quillet {

PageFlipTransition::PageFlipTransition() : TransitionClass("Page Flip") {}

}  // namespace quillet
