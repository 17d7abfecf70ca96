#include "effects/transitions/Blinds.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

BlindsTransition::BlindsTransition(std::string name) : Transition(std::move(name), kBlindsOptions) {}

}  // namespace quillet
