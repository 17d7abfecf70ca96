#include "effects/transitions/Window.h"

namespace quillet {

namespace {

const char* const kWritten[] = {"square_close",  "square_open",  "rectangle_close", "rectangle_open",
                                "circle_close",  "circle_open",  "star_close",      "star_open",
                                "star12_close",  "star12_open",  "diamond_close",   "diamond_open"};
// Reading knows "rectangle_open" but not "rectangle_close".
const char* const kRead[] = {"square_close", "square_open", nullptr,        "rectangle_open",
                             "circle_close", "circle_open", "star_close",   "star_open",
                             "star12_close", "star12_open", "diamond_close", "diamond_open"};
const char* const kItems[] = {"Square Close",  "Square Open",  "Rectangle Close", "Rectangle Open",
                              "Circle Close",  "Circle Open",  "Star Close",      "Star Open",
                              "Star-12 Close", "Star-12 Open", "Diamond Close",   "Diamond Open"};
constinit const KeywordOptionSpec kTypeSpec{"type", kWritten, kRead, "Shape:", kItems, 0};

}  // namespace

const KeywordOptionSpec& WindowTransition::TypeSpec() { return kTypeSpec; }

WindowTransition::WindowTransition() : TransitionClass("Window") {}

void WindowTransition::CopyFrom(const Transition& source) {
    Transition::CopyFrom(source);
    if (const auto* s = dynamic_cast<const WindowTransition*>(&source)) {
        type = s->type;
        spin = s->spin;
        spinCount = s->spinCount;
        spinClockwise = s->spinClockwise;
    }
}

void WindowTransition::ResetOptions() {
    type = kTypeSpec.defaultIndex;
    spin = false;
    spinCount = kDefaultSpinCount;
    spinClockwise = true;
}

void WindowTransition::ReadOptions(const XmlNode& element) { ReadKeyword(element, kTypeSpec, type); }

void WindowTransition::WriteOptions(XmlWriter& writer) const { WriteKeyword(writer, kTypeSpec, type); }

std::vector<TransitionOption> WindowTransition::Options() const {
    TransitionOption box;
    box.kind = TransitionOption::Kind::Bool;
    box.label = "Spin";
    box.controlId = OptionLabelId(1);
    box.defaultValue = 0;
    TransitionOption count;
    count.kind = TransitionOption::Kind::Real;
    count.controlId = OptionControlId(1);
    count.defaultValue = kDefaultSpinCount;
    count.decimals = 2;
    count.trailingLabel = "times";
    return {ListOption(kTypeSpec, 0), box, count};
}

double WindowTransition::OptionValue(size_t index) const {
    switch (index) {
        case 0: return type;
        case 1: return spin ? 1 : 0;
        case 2: return spinCount;
        default: return 0;
    }
}

bool WindowTransition::SetOptionValue(size_t index, double value) {
    switch (index) {
        case 0: return AssignChanged(type, ClampIndex(value, kTypeSpec.items.size()));
        case 1: return AssignChanged(spin, value != 0);
        case 2: return AssignChanged(spinCount, static_cast<float>(value));
        default: return false;
    }
}

}  // namespace quillet
