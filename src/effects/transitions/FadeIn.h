// "Fade In": the incoming slide fades in over the unchanged outgoing one.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class FadeInTransition : public TransitionClass<FadeInTransition> {
public:
    FadeInTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
