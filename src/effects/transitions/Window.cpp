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
// The "Spin" box and, on the next row, the count field followed by "times".
constexpr OptionSpec SpinBox() {
    OptionSpec spec;
    spec.kind = OptionKind::Bool;
    spec.label = "Spin";
    spec.controlId = OptionLabelId(1);
    return spec;
}

constexpr OptionSpec SpinCount() {
    OptionSpec spec;
    spec.kind = OptionKind::Real;
    spec.defaultValue = static_cast<double>(1.8f);
    spec.controlId = OptionControlId(1);
    spec.decimals = 2;
    spec.trailingLabel = "times";
    spec.singlePrecision = true;
    return spec;
}

constinit const OptionSpec kOptions[] = {
    ListOption(0, "type", "Shape:", kItems, kWritten, 0, kRead),
    SpinBox(),
    SpinCount(),
    HiddenOption(OptionKind::Bool, 1, 0, 1),  // turning clockwise
};

}  // namespace

WindowTransition::WindowTransition() : TransitionClass("Window", kOptions) {}

}  // namespace quillet
