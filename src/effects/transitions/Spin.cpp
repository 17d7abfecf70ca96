#include "effects/transitions/Spin.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// "Spins:" with a two-decimal field and the "Counter-Clockwise" box, whose
// value is saved negated as `clockwise`. The spin controls have fixed ids.
constinit const OptionSpec kOptions[] = {
    {.kind = OptionKind::Real, .attribute = "spins", .label = "Spins:", .defaultValue = 1.8f, .labelId = 10020,
     .controlId = 10021, .decimals = 2, .singlePrecision = true},
    {.kind = OptionKind::Bool, .attribute = "clockwise", .label = "Counter-Clockwise", .controlId = 10022,
     .negated = true},
};

// The slide's matrix turned by `degrees` (positive turns clockwise on the
// screen, where y grows downwards) and scaled by `size`, about its placement
// point, which stays at the slide's translation.
SwfMatrix Turned(const SwfMatrix& rest, double degrees, double size) {
    const double radians = degrees * std::numbers::pi / 180.0;
    const double sx = rest.scaleX / 65536.0 * size, sy = rest.scaleY / 65536.0 * size;
    SwfMatrix m = SwfMatrix::Scale(ToFixed16(std::cos(radians) * sx), ToFixed16(std::cos(radians) * sy),
                                   rest.translateX, rest.translateY);
    const int32_t skew0 = ToFixed16(std::sin(radians) * sx);   // x into y
    const int32_t skew1 = ToFixed16(-std::sin(radians) * sy);  // y into x
    if (skew0 != 0 || skew1 != 0) {
        m.SetRotate(skew0, false, true);
        m.SetRotate(skew1, true, true);
    }
    return m;
}

}  // namespace

SpinTransition::SpinTransition(std::string name, bool growsIn) : Transition(std::move(name), kOptions), growsIn_(growsIn) {}

bool SpinTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    double turn = static_cast<double>(spins()) * 360.0;
    if (!clockwise()) turn = -turn;

    // Spin In turns the incoming slide from minus the whole turn to upright
    // while it grows. Spin Out turns a copy of the outgoing slide, placed
    // above the incoming one, from upright through the turn while it shrinks.
    PlaceSlide(incoming, ctx);
    SlideOnStage* moving = growsIn_ ? incoming : outgoing;
    uint16_t depth = 0;
    SwfMatrix rest;
    if (moving && moving->characterId != 0) {
        rest = moving->matrix;
        if (growsIn_) {
            depth = moving->depth;
        } else {
            depth = PlaceSlideCopy(outgoing, ctx);
            RemoveSlide(outgoing, ctx);
        }
    }
    const double step = n > 0 ? 1.0 / n : 1.0;
    double p = 0.0;
    for (int i = 0; i < n; ++i) {
        p = std::min(p + step, 1.0);
        if (depth != 0) {
            const SwfMatrix m = growsIn_ ? Turned(rest, -turn * (1.0 - p), p) : Turned(rest, turn * p, 1.0 - p);
            ctx.movie.AddTag(PlaceObject2Tag::Modify(depth, m));
        }
        EndFrame(ctx);
    }
    if (growsIn_) {
        RemoveSlide(outgoing, ctx);
    } else if (depth != 0) {
        ctx.movie.AddTag(std::make_unique<RemoveObject2Tag>(depth));
    }
    return true;
}

}  // namespace quillet
