#include "effects/transitions/WipeOn.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

WipeOnTransition::WipeOnTransition() : WipeOnTransition("Wipe On") {}

WipeOnTransition::WipeOnTransition(std::string name) : TransitionClass(std::move(name), kWipeDirection) {}

}  // namespace quillet
