// "Zoom In" and "Zoom Out": a slide scales between nothing and full size about
// a point of the stage, its centre or the middle of an edge or a corner. They
// share the direction list, which names that point.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class ZoomTransition : public Transition {
public:
    int32_t direction() const { return options().Int(0); }

    // Zoom In grows the incoming slide from the point; Zoom Out shrinks a copy
    // of the outgoing slide, above the incoming one, into it.
    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;

protected:
    ZoomTransition(std::string name, bool growsIn);

private:
    bool growsIn_;
};

}  // namespace quillet
