#include "effects/transitions/DirectionTransition.h"

namespace quillet {

DirectionTransition::DirectionTransition(std::string name, const KeywordOptionSpec& table)
    : Transition(std::move(name)), direction(table.defaultIndex), table_(table) {}

void DirectionTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const DirectionTransition*>(&source)) direction = s->direction;
}

void DirectionTransition::ResetOptions() { direction = table_.defaultIndex; }

void DirectionTransition::ReadOptions(const XmlNode& element) { ReadKeyword(element, table_, direction); }

void DirectionTransition::WriteOptions(XmlWriter& writer) const { WriteKeyword(writer, table_, direction); }

std::vector<TransitionOption> DirectionTransition::Options() const { return {ListOption(table_, 0)}; }

double DirectionTransition::OptionValue(size_t index) const { return index == 0 ? direction : 0; }

bool DirectionTransition::SetOptionValue(size_t index, double value) {
    if (index != 0) return false;
    return AssignChanged(direction, ClampIndex(value, table_.items.size()));
}

}  // namespace quillet
