// "Blur In" and "Blur Out": a slide goes into or out of focus while it fades.
//
// The blur is made from the slide's own picture: several copies of it, each
// shifted by a small offset round a ring, stacked with opacities chosen so
// that the stage shows their average over what lies beneath. As the radius of
// the ring shrinks to nothing the copies coincide and the slide is sharp. No
// bitmap filters are needed, so the movie keeps its old player version.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class BlurTransition : public Transition {
public:
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    BlurTransition(std::string name, bool focusesIn);

private:
    bool focusesIn_;
};

}  // namespace quillet
