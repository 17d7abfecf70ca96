// "Curtain": the outgoing slide parts like a stage curtain.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class CurtainTransition : public TransitionClass<CurtainTransition> {
public:
    CurtainTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
