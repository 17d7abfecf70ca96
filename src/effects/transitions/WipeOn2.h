// "Wipe On 2": the options of "Wipe On", with a stepped edge: the stage is
// cut into bands across the wipe's way, and each band's part of the edge
// runs a step ahead of the next, so the incoming slide arrives as a staircase.
#pragma once

#include "effects/transitions/WipeOn.h"

namespace quillet {

class WipeOn2Transition : public TransitionClass<WipeOn2Transition, WipeOnTransition> {
public:
    WipeOn2Transition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
