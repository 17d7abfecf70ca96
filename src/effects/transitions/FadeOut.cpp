#include "effects/transitions/FadeOut.h"

#include <algorithm>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

FadeOutTransition::FadeOutTransition() : TransitionClass("Fade Out") {}

bool FadeOutTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    // The slides change at once; what fades is a copy of the outgoing slide
    // on a fresh depth above the incoming one, so the outgoing slide's own
    // depth is free again for whatever comes next.
    PlaceSlide(incoming, ctx);
    RemoveSlide(outgoing, ctx);
    const int n = FrameCount(ctx.fps);
    // Nothing to fade away (first slide) or no time to do it: no frames.
    if (n <= 0) return true;
    const uint16_t copy = PlaceSlideCopy(outgoing, ctx);
    if (copy == 0) return true;
    const double step = 1.0 / n;
    double q = 1.0;
    for (int i = 0; i < n; ++i) {
        q = std::max(q - step, 0.0);
        SetOpacity(copy, q, ctx);
        EndFrame(ctx);
    }
    ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(copy));
    return true;
}

}  // namespace quillet
