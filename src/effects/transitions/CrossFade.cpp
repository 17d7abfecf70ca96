#include "effects/transitions/CrossFade.h"

#include <algorithm>

#include "effects/SlideRender.h"

namespace quillet {

CrossFadeTransition::CrossFadeTransition() : TransitionClass("Cross Fade") {}

bool CrossFadeTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    PlaceSlide(incoming, ctx);
    const int n = FrameCount(ctx.fps);
    const double step = n > 0 ? 1.0 / n : 1.0;
    // The opacities are accumulated step by step and clamped, so rounding in
    // the sum can never overshoot full or empty.
    double in = 0.0, out = 1.0;
    for (int i = 0; i < n; ++i) {
        in = std::min(in + step, 1.0);
        out = std::max(out - step, 0.0);
        if (incoming && incoming->characterId != 0) SetOpacity(incoming->depth, in, ctx);
        if (outgoing && outgoing->characterId != 0) SetOpacity(outgoing->depth, out, ctx);
        EndFrame(ctx);
    }
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
