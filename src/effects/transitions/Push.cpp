#include "effects/transitions/Push.h"

#include <algorithm>
#include <cmath>

#include "effects/SlideRender.h"
#include "effects/transitions/SlidePlacement.h"

namespace quillet {

namespace {

// "Push" numbers its diagonals from to_top_left; the wipes number theirs the
// other way round. Saved files depend on both orders.
const char* const kKeywords[] = {"up", "down", "right", "left",
                                 "to_top_left", "to_top_right", "to_bottom_left", "to_bottom_right"};
const char* const kItems[] = {"Up", "Down", "Right", "Left", "Bottom Right to Top Left",
                              "Bottom Left to Top Right", "Top Right to Bottom Left", "Top Left to Bottom Right"};
constinit const OptionSpec kOptions[] = {ListOption(0, "direction", "Direction:", kItems, kKeywords, 2)};

// The way the slides travel, by direction index (y grows downwards).
constexpr int kWayX[] = {0, 0, 1, -1, -1, 1, -1, 1};
constexpr int kWayY[] = {-1, 1, 0, 0, -1, -1, 1, 1};

}  // namespace

PushTransition::PushTransition() : TransitionClass("Push", kOptions) {}

bool PushTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // A stage size each way, or more when a camera move has left the
    // outgoing slide larger than the stage: it must leave the stage whole.
    const int way = std::clamp(direction(), 0, 7);
    const double w = ctx.StageWidth(), h = ctx.StageHeight();
    double travelX = w, travelY = h;
    if (ShowsPicture(outgoing)) {
        const StageBox box = SlideBox(*outgoing);
        travelX = std::max(travelX, std::ceil(kWayX[way] < 0 ? box.right : w - box.left));
        travelY = std::max(travelY, std::ceil(kWayY[way] < 0 ? box.bottom : h - box.top));
    }
    travelX *= kWayX[way];
    travelY *= kWayY[way];
    PlaceSlide(incoming, ctx);
    const SlidePlacement in = ShowsPicture(incoming) ? SlidePlacement::Of(incoming->matrix) : SlidePlacement();
    const SlidePlacement out = ShowsPicture(outgoing) ? SlidePlacement::Of(outgoing->matrix) : SlidePlacement();
    for (int i = 1; i <= n; ++i) {
        const double p = double(i) / n;
        // One rounded offset for both keeps them exactly the travel apart.
        const double dx = std::round(travelX * p), dy = std::round(travelY * p);
        if (ShowsPicture(outgoing)) Reposition(outgoing->depth, out.Moved(dx, dy), ctx);
        if (ShowsPicture(incoming)) Reposition(incoming->depth, in.Moved(dx - travelX, dy - travelY), ctx);
        EndFrame(ctx);
    }
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
