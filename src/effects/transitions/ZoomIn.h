// "Zoom In": the incoming slide zooms in from a point or an edge.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class ZoomInTransition : public TransitionClass<ZoomInTransition> {
public:
    ZoomInTransition();
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
