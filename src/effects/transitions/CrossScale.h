// "Cross Scale": the outgoing slide swells and fades away while the incoming
// one settles from large to its own size and fades in.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CrossScaleTransition : public TransitionClass<CrossScaleTransition> {
public:
    CrossScaleTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
