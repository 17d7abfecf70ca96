#include "effects/transitions/CircularSweepOn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// The area a clock hand from the stage centre has swept, clipped to the
// stage, is the centre plus the stage outline from 12 o'clock to where the
// hand meets it. While the hand crosses one side of the outline only that
// last point moves, along a straight side: one morph shape per side (the
// top is two sides, either half of 12 o'clock) whose last point slides from
// the side's start to its end, and the ratio puts it under the hand.
struct Sweep {
    double cx = 0, cy = 0;
    std::array<StagePoint, 6> outline;  // 12 o'clock, the corners clockwise, 12 o'clock again
    std::array<double, 6> angle;        // of each outline point, clockwise from 12 o'clock

    Sweep(int32_t width, int32_t height) {
        // A twip beyond the stage all round, so its edges are never left half covered.
        const int32_t x0 = -20, y0 = -20, x1 = width + 20, y1 = height + 20;
        cx = width / 2.0;
        cy = height / 2.0;
        outline = {StagePoint{width / 2, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}, {width / 2, y0}};
        for (size_t k = 0; k < outline.size(); ++k)
            angle[k] = Angle(outline[k].first - cx, outline[k].second - cy);
        angle[0] = 0;
        angle[5] = 2 * std::numbers::pi;
    }

    static double Angle(double dx, double dy) {
        const double a = std::atan2(dx, -dy);
        return a < 0 ? a + 2 * std::numbers::pi : a;
    }

    // The side (0..4) the hand crosses at `radians` past 12 o'clock.
    int Side(double radians) const {
        int k = 0;
        while (k < 4 && radians >= angle[k + 1]) ++k;
        return k;
    }

    // How far along side k (0..1) the hand at `radians` meets it.
    double Along(int k, double radians) const {
        const double dx = std::sin(radians), dy = -std::cos(radians);
        const StagePoint s = outline[k], e = outline[k + 1];
        const double sx = s.first - cx, sy = s.second - cy;
        const double ex = e.first - s.first, ey = e.second - s.second;
        const double den = dx * ey - dy * ex;
        if (den == 0) return 0;
        return std::clamp(-(dx * sy - dy * sx) / den, 0.0, 1.0);
    }

    // The swept area while the hand is on side k: collapsed onto the side's
    // start, or reaching its end. Listed anticlockwise on screen: the morph
    // writer closes only such outlines correctly (it reads past the last point
    // of a clockwise one), and turns them round itself.
    StagePolygon Area(int k, bool reachingEnd) const {
        StagePolygon p = {{static_cast<int32_t>(std::lround(cx)), static_cast<int32_t>(std::lround(cy))}};
        p.push_back(reachingEnd ? outline[k + 1] : outline[k]);
        for (int j = k; j >= 0; --j) p.push_back(outline[j]);
        return p;
    }
};

}  // namespace

CircularSweepOnTransition::CircularSweepOnTransition() : TransitionClass("Circular Sweep On") {}

bool CircularSweepOnTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);
    if (!incoming || incoming->characterId == 0) return PassFrames(incoming, outgoing, n, ctx);
    if (n == 1) {
        // The only frame is the finished sweep.
        PlaceSlide(incoming, ctx);
        EndFrame(ctx);
        RemoveSlide(outgoing, ctx);
        return true;
    }

    const Sweep sweep(ctx.StageWidth(), ctx.StageHeight());
    uint16_t maskDepth = 0;
    int side = -1;
    for (int i = 1; i < n; ++i) {
        const double radians = 2 * std::numbers::pi * i / n;
        const int k = sweep.Side(radians);
        const uint16_t ratio = MorphRatio(sweep.Along(k, radians));
        if (k == side) {
            ModifyMask(maskDepth, SwfMatrix(), ratio, ctx);
        } else {
            // The hand moved on to another side: its morph takes the mask's depth.
            const uint16_t shape = DefineMorphPolygons({sweep.Area(k, false)}, {sweep.Area(k, true)}, ctx);
            if (maskDepth == 0) {
                maskDepth = PlaceMaskedSlide(incoming, shape, ctx, SwfMatrix(), ratio);
            } else {
                RemoveDepth(maskDepth, ctx);
                auto clip = PlaceObject2Tag::Place(maskDepth, shape, SwfMatrix());
                clip->clipDepth = incoming->depth;
                clip->ratio = ratio;
                ctx.movie.AddTag(std::move(clip));
            }
            side = k;
        }
        EndFrame(ctx);
    }
    // A full turn: the mask goes and the slide shows whole.
    RemoveDepth(maskDepth, ctx);
    EndFrame(ctx);
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
