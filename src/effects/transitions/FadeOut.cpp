#include "effects/transitions/FadeOut.h"

namespace quillet {

FadeOutTransition::FadeOutTransition() : TransitionClass("Fade Out") {}

}  // namespace quillet
