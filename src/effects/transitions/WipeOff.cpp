#include "effects/transitions/WipeOff.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

WipeOffTransition::WipeOffTransition() : TransitionClass("Wipe Off", kWipeOffOptions) {}

}  // namespace quillet
