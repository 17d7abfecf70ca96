#include "effects/transitions/KeywordTables.h"

namespace quillet {

namespace {

const char* const kBlindsKeywords[] = {"horizontal_up", "horizontal_down", "vertical_left", "vertical_right"};
const char* const kBlindsItems[] = {"Horizontal Up", "Horizontal Down", "Vertical Left", "Vertical Right"};
const char* const kSlideCloseKeywords[] = {
    "horizontal", "vertical", "horizontal_opposite_left_to_right", "horizontal_opposite_right_to_left",
    "vertical_opposite_top_to_bottom", "vertical_opposite_bottom_to_top", "corners"};
const char* const kSlideCloseItems[] = {
    "Horizontal", "Vertical", "Horizontal Opposite Left to Right", "Horizontal Opposite Right to Left",
    "Vertical Opposite Top to Bottom", "Vertical Opposite Bottom to Top", "Corners"};
// The wipes number their corners from to_bottom_right; "Push" has its own order.
const char* const kWipeKeywords[] = {
    "up", "down", "right", "left", "to_bottom_right", "to_bottom_left", "to_top_right", "to_top_left",
    "diag_to_bottom_right", "diag_to_bottom_left", "diag_to_top_right", "diag_to_top_left"};
const char* const kWipeItems[] = {
    "Up", "Down", "Right", "Left", "Top Left to Bottom Right", "Top Right to Bottom Left",
    "Bottom Left to Top Right", "Bottom Right to Top Left", "Diagonal to Bottom Right",
    "Diagonal to Bottom Left", "Diagonal to Top Right", "Diagonal to Top Left"};
const char* const kZoomKeywords[] = {"none", "up", "down", "right", "left",
                                     "top_left", "top_right", "bottom_left", "bottom_right"};
// The lower-case "left" in the sixth item is the shipped text.
const char* const kZoomItems[] = {"None", "Up", "Down", "Right", "Left", "Bottom Right to Top left",
                                  "Bottom Left to Top Right", "Top Right to Bottom Left", "Top Left to Bottom Right"};

}  // namespace

constinit const OptionSpec kBlindsOptions[2] = {
    ListOption(0, "direction", "Direction", kBlindsItems, kBlindsKeywords, 0),
    HiddenOption(OptionKind::Integer, 20, 1, 200),
};
constinit const OptionSpec kSlideCloseOptions[1] = {
    ListOption(0, "direction", "Direction", kSlideCloseItems, kSlideCloseKeywords, 0)};
constinit const OptionSpec kWipeOnOptions[1] = {ListOption(0, "direction", "Direction:", kWipeItems, kWipeKeywords, 2)};
constinit const OptionSpec kWipeOffOptions[1] = {ListOption(0, "direction", "Direction", kWipeItems, kWipeKeywords, 2)};
constinit const OptionSpec kZoomOptions[1] = {ListOption(0, "direction", "Direction:", kZoomItems, kZoomKeywords, 0)};

}  // namespace quillet
