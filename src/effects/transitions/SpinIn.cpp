#include "effects/transitions/SpinIn.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// 16.16 fixed point as the matrices take it: v * 65536 + 0.5, truncated.
int32_t Fixed(double v) { return static_cast<int32_t>(v * 65536.0 + 0.5); }

}  // namespace

SpinInTransition::SpinInTransition() : TransitionClass("Spin In") {}

bool SpinInTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    PlaceSlide(incoming, ctx);
    const int n = FrameCount(ctx.fps);
    const bool shown = incoming && incoming->characterId != 0;
    const double step = n > 0 ? 1.0 / n : 1.0;

    // The whole turn, signed so that a positive angle turns clockwise on the
    // screen (y grows downwards). The angle runs linearly from minus the turn
    // up to 0, so the slide visibly turns the chosen way and stands upright
    // on the last frame.
    double turn = static_cast<double>(spins) * 360.0;
    if (!clockwise) turn = -turn;
    if (!std::isfinite(turn)) turn = 0;  // a damaged spin count grows the slide without turning

    double p = 0.0;
    for (int i = 0; i < n; ++i) {
        p = std::min(p + step, 1.0);
        if (shown) {
            const double radians = -turn * (1.0 - p) * std::numbers::pi / 180.0;
            const int32_t scale = Fixed(std::cos(radians) * p);
            const int32_t skew0 = Fixed(std::sin(radians) * p);   // x into y
            const int32_t skew1 = Fixed(-std::sin(radians) * p);  // y into x
            // The slide turns and grows about its centre, which stays where it
            // is when the slide rests (turning about the placement point, the
            // top-left corner, would swing the picture across the stage). On
            // the last frame this is exactly the slide's own position.
            const double cx = incoming->width / 2.0, cy = incoming->height / 2.0;
            const double mappedX = (scale * cx + skew1 * cy) / 65536.0;
            const double mappedY = (skew0 * cx + scale * cy) / 65536.0;
            SwfMatrix m = SwfMatrix::Scale(scale, scale, static_cast<int32_t>(std::lround(incoming->x + cx - mappedX)),
                                           static_cast<int32_t>(std::lround(incoming->y + cy - mappedY)));
            if (skew0 != 0 || skew1 != 0) {
                m.SetRotate(skew0, false, true);
                m.SetRotate(skew1, true, true);
            }
            ctx.movie.AddTag(PlaceObject2Tag::Modify(incoming->depth, m));
        }
        EndFrame(ctx);
    }
    // The slide's stored placement stays what PlaceSlide made it: scale 1 at
    // its own position, which is also where the last frame left it.
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
