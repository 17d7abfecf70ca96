// "Zoom Out": the outgoing slide shrinks to nothing, into the centre or an edge or corner of the stage.
#pragma once

#include "effects/transitions/Zoom.h"

namespace quillet {

class ZoomOutTransition : public TransitionClass<ZoomOutTransition, ZoomTransition> {
public:
    ZoomOutTransition();
};

}  // namespace quillet
