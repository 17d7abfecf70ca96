#include "effects/transitions/SlideTriangleOpen.h"

namespace quillet {

namespace {

const char* const kKeywords[] = {"horizontal_right_to_left", "horizontal_left_to_right", "vertical_bottom_to_top",
                                 "vertical_top_to_bottom", "top_left_bottom_right", "top_left_bottom_right_opposite",
                                 "top_right_bottom_left", "top_right_bottom_left_opposite", "corners"};
const char* const kItems[] = {"Horizontal Right to Left", "Horizontal Left to Right", "Vertical Bottom to Top",
                              "Vertical Top to Bottom", "Top Left - Bottom Right Out",
                              "Top Left - Bottom Right Opposite", "Top Right - Bottom Left Out",
                              "Top Right - Bottom Left Opposite", "Corners"};
constinit const OptionSpec kOptions[] = {ListOption(0, "direction", "Direction", kItems, kKeywords, 0)};

}  // namespace

SlideTriangleOpenTransition::SlideTriangleOpenTransition() : TransitionClass("Slide Triangle Open", kOptions) {}

}  // namespace quillet
