// "Zoom In": the incoming slide zooms in from a point or an edge.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class ZoomInTransition : public TransitionClass<ZoomInTransition, DirectionTransition> {
public:
    ZoomInTransition();
};

}  // namespace quillet
