// "Page Flip": the outgoing slide turns over like a page.
#pragma once

#include "effects/Transition.h"

namespace quillet {

class PageFlipTransition : public TransitionClass<PageFlipTransition> {
public:
    PageFlipTransition();

    bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const override;
};

}  // namespace quillet
