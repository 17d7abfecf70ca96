// "Cross Fade": the incoming slide fades in while the outgoing one fades out.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CrossFadeTransition : public TransitionClass<CrossFadeTransition> {
public:
    CrossFadeTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
