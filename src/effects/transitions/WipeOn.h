// "Wipe On": a moving mask uncovers the incoming slide over the outgoing one,
// from a side, a corner or along a diagonal.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class WipeOnTransition : public TransitionClass<WipeOnTransition> {
public:
    WipeOnTransition();
    int32_t direction() const { return options().Int(0); }

    // A stage-sized mask on a fresh depth clips the incoming slide, which
    // moves to the depth right above the mask and stays there.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    // For "Wipe On 2", which keeps these options and draws its own frames
    // (until it overrides Render, it wipes as this class does).
    explicit WipeOnTransition(std::string name);
};

}  // namespace quillet
