// Option tables shared by more than one transition class.
#pragma once

#include "effects/Transition.h"

namespace quillet {

// The direction, index 0 of each table.
extern const OptionSpec kBlindsOptions[2];      // "Blinds In", "Blinds Out": direction, blind count (not saved)
extern const OptionSpec kSlideCloseOptions[1];  // "Slide Close", "Slide Open"
extern const OptionSpec kWipeOnOptions[1];      // "Wipe On", "Wipe On 2": label "Direction:"
extern const OptionSpec kWipeOffOptions[1];     // "Wipe Off": the same lists, label "Direction"
extern const OptionSpec kZoomOptions[1];        // "Zoom In", "Zoom Out"

}  // namespace quillet
