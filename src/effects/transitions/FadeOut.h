// "Fade Out": a copy of the outgoing slide fades out above the incoming one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class FadeOutTransition : public TransitionClass<FadeOutTransition> {
public:
    FadeOutTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
