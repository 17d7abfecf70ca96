#include "effects/transitions/DirectionTransition.h"

namespace quillet {

DirectionTransition::DirectionTransition(std::string name, const KeywordOptionSpec& spec)
    : Transition(std::move(name)), direction(spec.defaultIndex), spec_(spec) {}

void DirectionTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const DirectionTransition*>(&source)) direction = s->direction;
}

void DirectionTransition::ResetOptions() { direction = spec_.defaultIndex; }

void DirectionTransition::ReadOptions(const XmlNode& element) { ReadKeyword(element, spec_, direction); }

void DirectionTransition::WriteOptions(XmlWriter& writer) const { WriteKeyword(writer, spec_, direction); }

std::vector<TransitionOption> DirectionTransition::Options() const { return {ListOption(spec_, 0)}; }

double DirectionTransition::OptionValue(size_t index) const { return index == 0 ? direction : 0; }

bool DirectionTransition::SetOptionValue(size_t index, double value) {
    if (index != 0) return false;
    return AssignChanged(direction, ClampIndex(value, spec_.items.size()));
}

}  // namespace quillet
