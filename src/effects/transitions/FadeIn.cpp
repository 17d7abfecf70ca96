#include "effects/transitions/FadeIn.h"

namespace quillet {

FadeInTransition::FadeInTransition() : TransitionClass("Fade In") {}

}  // namespace quillet
