#include "effects/transitions/CrossScale.h"

#include "effects/SlideRender.h"
#include "effects/transitions/SlidePlacement.h"

namespace quillet {

namespace {

// How large the slides are at the far ends of their moves: the outgoing one
// swells to this and the incoming one starts from it, both about the stage's
// centre, so the whole picture seems to rush towards the viewer.
constexpr double kSwell = 2.0;

}  // namespace

CrossScaleTransition::CrossScaleTransition() : TransitionClass("Cross Scale") {}

bool CrossScaleTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    const double cx = ctx.StageWidth() / 2.0, cy = ctx.StageHeight() / 2.0;
    PlaceSlide(incoming, ctx);
    const SlidePlacement in = ShowsPicture(incoming) ? SlidePlacement::Of(incoming->matrix) : SlidePlacement();
    const SlidePlacement out = ShowsPicture(outgoing) ? SlidePlacement::Of(outgoing->matrix) : SlidePlacement();
    for (int i = 1; i <= n; ++i) {
        const double p = double(i) / n;
        const double outScale = 1 + (kSwell - 1) * p, inScale = kSwell - (kSwell - 1) * p;
        if (ShowsPicture(outgoing)) Reposition(outgoing->depth, out.ScaledAbout(outScale, outScale, cx, cy), ctx, 1 - p);
        if (ShowsPicture(incoming)) Reposition(incoming->depth, in.ScaledAbout(inScale, inScale, cx, cy), ctx, p);
        EndFrame(ctx);
    }
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
