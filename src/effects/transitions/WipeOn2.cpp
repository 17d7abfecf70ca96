#include "effects/transitions/WipeOn2.h"

#include <algorithm>
#include <cmath>

#include "effects/StageShapes.h"

namespace quillet {

namespace {

constexpr int kBands = 8;
constexpr double kMargin = 40;  // twips beyond the stage, so no sliver of the old slide stays

// The way the edge travels, as a unit vector: along an axis for the sides,
// towards the far corner for the corners, and across the other diagonal for
// the diagonal directions (whose edge runs parallel to that diagonal).
void Travel(int32_t direction, double w, double h, double& dx, double& dy) {
    static constexpr int kSigns[12][2] = {{0, -1}, {0, 1},  {1, 0},  {-1, 0},  {1, 1},  {-1, 1},
                                          {1, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}};
    if (direction < 0 || direction >= 12) direction = 2;
    dx = kSigns[direction][0];
    dy = kSigns[direction][1];
    if (direction >= 4 && direction < 8) dx *= w, dy *= h;
    if (direction >= 8) dx *= h, dy *= w;
    const double length = std::hypot(dx, dy);
    dx /= length;
    dy /= length;
}

}  // namespace

WipeOn2Transition::WipeOn2Transition() : TransitionClass("Wipe On 2") {}

bool WipeOn2Transition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // Work in (u, v): u along the travel, v across it. The stage's corners
    // give the ranges to cover.
    const double w = ctx.StageWidth(), h = ctx.StageHeight();
    double dx, dy;
    Travel(direction(), w, h, dx, dy);
    double uMin = 1e18, uMax = -1e18, vMin = 1e18, vMax = -1e18;
    for (double x : {0.0, w})
        for (double y : {0.0, h}) {
            uMin = std::min(uMin, x * dx + y * dy), uMax = std::max(uMax, x * dx + y * dy);
            vMin = std::min(vMin, -x * dy + y * dx), vMax = std::max(vMax, -x * dy + y * dx);
        }
    // Band j's edge leads band j + 1 by one step. At rest every edge is
    // behind the stage; the mask then travels until the last band's edge
    // is past it.
    // The steps together span a third of the way, so even a corner-first
    // wipe has uncovered a fair part of the stage a quarter of the way in.
    const double step = (uMax - uMin) / (3.0 * (kBands - 1));
    const double lead = uMin - (kBands - 1) * step;
    const double travel = uMax - lead + kMargin;
    const double tail = lead - travel - kMargin;
    const double band = (vMax - vMin) / kBands;
    auto point = [&](double u, double v) {
        return StagePoint(static_cast<int32_t>(std::lround(u * dx - v * dy)), static_cast<int32_t>(std::lround(u * dy + v * dx)));
    };
    StagePolygon mask{point(tail, vMin - kMargin)};
    for (int j = 0; j < kBands; ++j) {
        const double edge = lead + (kBands - 1 - j) * step;
        mask.push_back(point(edge, j == 0 ? vMin - kMargin : vMin + j * band));
        mask.push_back(point(edge, j == kBands - 1 ? vMax + kMargin : vMin + (j + 1) * band));
    }
    mask.push_back(point(tail, vMax + kMargin));

    const uint16_t maskDepth =
        incoming && incoming->characterId != 0 ? PlaceMaskedSlide(incoming, DefinePolygons({mask}, ctx), ctx) : 0;
    for (int i = 1; i <= n; ++i) {
        const double along = travel * i / n;
        if (maskDepth != 0)
            ModifyMask(maskDepth, SwfMatrix::Translate(static_cast<int32_t>(along * dx), static_cast<int32_t>(along * dy)),
                       std::nullopt, ctx);
        EndFrame(ctx);
    }
    RemoveDepth(maskDepth, ctx);
    RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
