// "Zoom In": the incoming slide grows from nothing, out of the centre or an edge or corner of the stage.
#pragma once

#include "effects/transitions/Zoom.h"

namespace quillet {

class ZoomInTransition : public TransitionClass<ZoomInTransition, ZoomTransition> {
public:
    ZoomInTransition();
};

}  // namespace quillet
