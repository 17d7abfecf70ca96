// Keyword tables and list items shared by more than one transition class.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

extern const KeywordOptionSpec kBlindsDirection;       // "Blinds In", "Blinds Out"
extern const KeywordOptionSpec kSlideCloseDirection;   // "Slide Close", "Slide Open"
extern const KeywordOptionSpec kWipeDirection;         // "Wipe On", "Wipe On 2": label "Direction:"
extern const KeywordOptionSpec kWipeOffDirection;      // "Wipe Off": same lists, label "Direction"
extern const KeywordOptionSpec kZoomDirection;         // "Zoom In", "Zoom Out"

}  // namespace quillet
