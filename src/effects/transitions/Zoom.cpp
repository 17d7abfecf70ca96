#include "effects/transitions/Zoom.h"

#include <algorithm>

#include "effects/SlideRender.h"
#include "effects/transitions/KeywordTables.h"
#include "effects/transitions/SlidePlacement.h"

namespace quillet {

namespace {

// The fixed point as a fraction of the stage, by direction index: none, up,
// down, right, left, top_left, top_right, bottom_left, bottom_right.
constexpr double kPointX[] = {0.5, 0.5, 0.5, 1, 0, 0, 1, 0, 1};
constexpr double kPointY[] = {0.5, 0, 1, 0.5, 0.5, 0, 0, 1, 1};

}  // namespace

ZoomTransition::ZoomTransition(std::string name, bool growsIn)
    : Transition(std::move(name), kZoomOptions), growsIn_(growsIn) {}

bool ZoomTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    const int at = std::clamp(direction(), 0, 8);
    const double px = kPointX[at] * ctx.StageWidth(), py = kPointY[at] * ctx.StageHeight();
    // Zoom Out's copy is gone on the last frame rather than drawn at scale 0.
    MoveOneSlide(incoming, outgoing, growsIn_, n, ctx, [&](uint16_t depth, const SlidePlacement& rest, double p) {
        const double s = growsIn_ ? p : 1 - p;
        Reposition(depth, rest.ScaledAbout(s, s, px, py), ctx);
    });
    return true;
}

}  // namespace quillet
