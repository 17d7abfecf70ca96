#include "effects/transitions/Blinds.h"

#include "effects/transitions/KeywordTables.h"

namespace quillet {

BlindsTransition::BlindsTransition(std::string name) : DirectionTransition(std::move(name), kBlindsDirection) {}

void BlindsTransition::CopyFrom(const Transition& source) {
    DirectionTransition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const BlindsTransition*>(&source)) count = s->count;
}

void BlindsTransition::ResetOptions() {
    DirectionTransition::ResetOptions();
    count = kDefaultCount;
}

}  // namespace quillet
