#include "effects/transitions/Checker.h"

namespace quillet {

namespace {

const char* const kTypeKeywords[] = {"appear",   "fade_in", "zoom_in",   "drop_left",
                                     "drop_right", "drop_up", "drop_down", "drop_random"};
const char* const kTypeItems[] = {"Appear",     "Fade In", "Zoom In",   "Drop Left",
                                  "Drop Right", "Drop Up", "Drop Down", "Drop Random"};

const char* const kDirectionRead[] = {
    "horizontal_left_to_right_down", "horizontal_left_to_right_up", "horizontal_right_to_left_down",
    "horizontal_right_to_left_up",   "vertical_top_to_bottom_right", "vertical_top_to_bottom_left",
    "vertical_bottom_to_top_right",  "vertical_bottom_to_top_left",  "spiral_top_left_cw",
    "spiral_top_left_ccw",           "spiral_top_right_cw",          "spiral_top_right_ccw",
    "spiral_bottom_left_cw",         "spiral_bottom_left_ccw",       "spiral_bottom_right_cw",
    "spiral_bottom_right_ccw",       "random"};
const char* const kDirectionWritten[] = {
    "horizontal_left_to_right_down",      "horizontal_left_to_right_up",
    "horizontal_right_to_left_down",      "horizontal_right_to_left_up",
    "horizontal_top_to_bottom_right",     "horizontal_top_to_bottom_left",
    "horizontal_bottom_to_top_right",     "horizontal_bottom_to_top_left",
    "horizontal_spiral_top_left_cw",      "horizontal_spiral_top_left_ccw",
    "horizontal_spiral_top_right_cw",     "horizontal_spiral_top_right_ccw",
    "horizontal_spiral_bottom_left_cw",   "horizontal_spiral_bottom_left_ccw",
    "horizontal_spiral_bottom_right_cw",  "horizontal_spiral_bottom_right_ccw",
    "random"};
const char* const kDirectionItems[] = {
    "Left to Right Down",     "Left to Right Up",       "Right to Left Down",    "Right to Left Up",
    "Top to Bottom Right",    "Top to Bottom Left",     "Bottom to Top Right",   "Bottom to Top Left",
    "Spiral Top Left CW",     "Spiral Top Left CCW",    "Spiral Top Right CW",   "Spiral Top Right CCW",
    "Spiral Bottom Left CW",  "Spiral Bottom Left CCW", "Spiral Bottom Right CW", "Spiral Bottom Right CCW",
    "Random"};

// Directions 4 to 15 are written in forms that reading does not know, so
// they come back as 0; files saved that way must keep doing so.
constinit const OptionSpec kOptions[] = {
    ListOption(0, "type", "Type:", kTypeItems, kTypeKeywords, 0),
    ListOption(1, "direction", "Direction:", kDirectionItems, kDirectionWritten, 0, kDirectionRead),
    HiddenOption(OptionKind::Integer, 1600, 20, 100000),  // cell width, twips
    HiddenOption(OptionKind::Integer, 1600, 20, 100000),  // cell height
};

}  // namespace

CheckerTransition::CheckerTransition() : TransitionClass("Checker", kOptions) {}

}  // namespace quillet
