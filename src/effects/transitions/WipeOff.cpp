#include "effects/transitions/WipeOff.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

WipeOffTransition::WipeOffTransition() : TransitionClass("Wipe Off", kWipeOffDirection) {}

}  // namespace quillet
