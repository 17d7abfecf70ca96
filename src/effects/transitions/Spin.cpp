#include "effects/transitions/Spin.h"

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

SpinTransition::SpinTransition(std::string name) : Transition(std::move(name)) {}

void SpinTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const SpinTransition*>(&source)) {
        spins = s->spins;
        clockwise = s->clockwise;
    }
}

void SpinTransition::ResetOptions() {
    spins = kDefaultSpins;
    clockwise = true;
}

void SpinTransition::ReadOptions(const XmlNode& element) {
    element.readFloat("spins", spins);
    element.readBool("clockwise", clockwise);
}

void SpinTransition::WriteOptions(XmlWriter& writer) const {
    writer.attributeReal("spins", spins);
    writer.attribute("clockwise", clockwise);
}

std::vector<TransitionOption> SpinTransition::Options() const {
    TransitionOption count;
    count.kind = TransitionOption::Kind::Real;
    count.label = "Spins:";
    count.labelId = kSpinsLabelId;
    count.controlId = kSpinsFieldId;
    count.attribute = "spins";
    count.defaultValue = kDefaultSpins;
    count.decimals = 2;
    TransitionOption direction;
    direction.kind = TransitionOption::Kind::Bool;
    direction.label = "Counter-Clockwise";
    direction.controlId = kCounterClockwiseId;
    direction.attribute = "clockwise";  // saved negated
    direction.defaultValue = 0;
    return {count, direction};
}

double SpinTransition::OptionValue(size_t index) const {
    switch (index) {
        case 0: return spins;
        case 1: return clockwise ? 0 : 1;
        default: return 0;
    }
}

bool SpinTransition::SetOptionValue(size_t index, double value) {
    switch (index) {
        case 0: return AssignChanged(spins, static_cast<float>(value));  // exact comparison
        case 1: return AssignChanged(clockwise, value == 0);
        default: return false;
    }
}

}  // namespace quillet
