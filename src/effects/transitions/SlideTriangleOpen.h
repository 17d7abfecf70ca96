// "Slide Triangle Open": the outgoing slide splits along a diagonal (or into
// corner triangles) that slide apart, uncovering the incoming one.
#pragma once

#include "effects/transitions/DirectionTransition.h"

namespace quillet {

class SlideTriangleOpenTransition : public TransitionClass<SlideTriangleOpenTransition, DirectionTransition> {
public:
    SlideTriangleOpenTransition();
};

}  // namespace quillet
