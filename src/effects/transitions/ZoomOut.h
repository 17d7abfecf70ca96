// "Zoom Out": the outgoing slide zooms out to a point or an edge.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class ZoomOutTransition : public TransitionClass<ZoomOutTransition, DirectionTransition> {
public:
    ZoomOutTransition();
};

}  // namespace quillet
