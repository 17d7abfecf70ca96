#include "effects/transitions/Push.h"

namespace quillet {

namespace {

// "Push" numbers its diagonals from to_top_left; the wipes number theirs the
// other way round. Saved files depend on both orders.
const char* const kKeywords[] = {"up", "down", "right", "left",
                                 "to_top_left", "to_top_right", "to_bottom_left", "to_bottom_right"};
const char* const kItems[] = {"Up", "Down", "Right", "Left", "Bottom Right to Top Left",
                              "Bottom Left to Top Right", "Top Right to Bottom Left", "Top Left to Bottom Right"};
constinit const OptionSpec kOptions[] = {ListOption(0, "direction", "Direction:", kItems, kKeywords, 2)};

}  // namespace

PushTransition::PushTransition() : TransitionClass("Push", kOptions) {}

}  // namespace quillet
