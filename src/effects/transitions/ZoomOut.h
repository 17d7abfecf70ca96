// "Zoom Out": the outgoing slide zooms out to a point or an edge.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class ZoomOutTransition : public TransitionClass<ZoomOutTransition> {
public:
    ZoomOutTransition();
    int32_t direction() const { return options().Int(0); }
};

}  // namespace quillet
