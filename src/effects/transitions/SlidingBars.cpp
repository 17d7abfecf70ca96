#include "effects/transitions/SlidingBars.h"

namespace quillet {

namespace {

const char* const kKeywords[] = {"horizontal", "horizontal_top_to_bottom", "horizontal_bottom_to_top",
                                 "horizontal_middle_in", "horizontal_middle_out", "vertical",
                                 "vertical_left_to_right", "vertical_right_to_left", "vertical_middle_in",
                                 "vertical_middle_out"};
const char* const kItems[] = {"Horizontal", "Horizontal Top to Bottom", "Horizontal Bottom to Top",
                              "Horizontal Middle In", "Horizontal Middle Out", "Vertical",
                              "Vertical Left to Right", "Vertical Right to Left", "Vertical Middle In",
                              "Vertical Middle Out"};
constinit const OptionSpec kOptions[] = {
    ListOption(0, "direction", "Direction", kItems, kKeywords, 0),
    HiddenOption(OptionKind::Integer, 10, 1, 100),  // the bar count
};

}  // namespace

SlidingBarsTransition::SlidingBarsTransition() : TransitionClass("Sliding Bars", kOptions) {}

}  // namespace quillet
