#include "effects/transitions/FadeIn.h"

#include <algorithm>

#include "effects/SlideRender.h"

namespace quillet {

FadeInTransition::FadeInTransition() : TransitionClass("Fade In") {}

bool FadeInTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    PlaceSlide(incoming, ctx);
    const int n = FrameCount(ctx.fps);
    const double step = n > 0 ? 1.0 / n : 1.0;
    double p = 0.0;
    for (int i = 0; i < n; ++i) {
        p = std::min(p + step, 1.0);
        if (incoming && incoming->characterId != 0) SetOpacity(incoming->depth, p, ctx);
        EndFrame(ctx);
    }
    // The outgoing slide stayed untouched underneath; it goes once the
    // incoming one covers it.
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
