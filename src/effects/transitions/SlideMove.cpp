#include "effects/transitions/SlideMove.h"

namespace quillet {

namespace {

constexpr OptionSpec Field(int slot, OptionKind kind, const char* attribute, const char* label) {
    OptionSpec spec;
    spec.kind = kind;
    spec.attribute = attribute;
    spec.label = label;
    spec.labelId = OptionLabelId(slot);
    spec.controlId = OptionControlId(slot);
    spec.decimals = kind == OptionKind::Real ? 2 : 0;
    return spec;
}

// The "Fade Out" box: a check box needs no separate label.
constexpr OptionSpec FadeOut() {
    OptionSpec spec;
    spec.kind = OptionKind::Bool;
    spec.attribute = "fade_out";
    spec.label = "Fade Out";
    spec.defaultValue = 1;
    spec.controlId = OptionLabelId(4);
    return spec;
}

constinit const OptionSpec kStartOptions[] = {
    Field(0, OptionKind::Integer, "final_x", "Delta X:"),
    Field(1, OptionKind::Integer, "final_y", "Delta Y:"),
    Field(2, OptionKind::Real, "final_sx", "Start Scale X:"),
    Field(3, OptionKind::Real, "final_sy", "Start Scale Y:"),
    FadeOut(),
};
constinit const OptionSpec kEndOptions[] = {
    Field(0, OptionKind::Integer, "final_x", "Delta X:"),
    Field(1, OptionKind::Integer, "final_y", "Delta Y:"),
    Field(2, OptionKind::Real, "final_sx", "End Scale X:"),
    Field(3, OptionKind::Real, "final_sy", "End Scale Y:"),
    FadeOut(),
};

}  // namespace

SlideMoveTransition::SlideMoveTransition(std::string name, bool startScales)
    : Transition(std::move(name), startScales ? OptionTable(kStartOptions) : OptionTable(kEndOptions)) {}

}  // namespace quillet
