#include "effects/transitions/Window.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/transitions/PagePieces.h"
#include "swf/SwfShape.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

const char* const kWritten[] = {"square_close",  "square_open",  "rectangle_close", "rectangle_open",
                                "circle_close",  "circle_open",  "star_close",      "star_open",
                                "star12_close",  "star12_open",  "diamond_close",   "diamond_open"};
// Reading knows "rectangle_open" but not "rectangle_close".
const char* const kRead[] = {"square_close", "square_open", nullptr,        "rectangle_open",
                             "circle_close", "circle_open", "star_close",   "star_open",
                             "star12_close", "star12_open", "diamond_close", "diamond_open"};
const char* const kItems[] = {"Square Close",  "Square Open",  "Rectangle Close", "Rectangle Open",
                              "Circle Close",  "Circle Open",  "Star Close",      "Star Open",
                              "Star-12 Close", "Star-12 Open", "Diamond Close",   "Diamond Open"};
// The shape list, the "Spin" box and, on the next row, the count field
// followed by "times"; the turning direction has no control.
constinit const OptionSpec kOptions[] = {
    ListOption(0, "type", "Shape:", kItems, kWritten, 0, kRead),
    {.kind = OptionKind::Bool, .label = "Spin", .controlId = OptionLabelId(1)},
    {.kind = OptionKind::Real, .defaultValue = 1.8f, .controlId = OptionControlId(1), .decimals = 2,
     .trailingLabel = "times", .singlePrecision = true},
    HiddenOption(OptionKind::Bool, 1, 0, 1),  // turning clockwise
};

enum class Shape { Square, Rectangle, Circle, Star, Star12, Diamond };

// The window is drawn once about the origin, at a size with room for exact
// twips, and scaled, turned and centred on the stage by its matrix.
constexpr double kRadius = 10000;

// A star with `points` points, one straight up; `inner` is the radius of the
// notches against that of the points.
StagePolygon Star(int points, double inner) {
    StagePolygon p;
    for (int k = 0; k < 2 * points; ++k) {
        const double a = k * std::numbers::pi / points;
        const double r = (k % 2 == 0 ? 1.0 : inner) * kRadius;
        p.emplace_back(static_cast<int32_t>(std::lround(r * std::sin(a))),
                       static_cast<int32_t>(std::lround(-r * std::cos(a))));
    }
    return p;
}

constexpr double kStarInner = 0.382;   // the five-point star's notches, as in a pentagram
constexpr double kStar12Inner = 0.62;  // the twelve-point star's

// The scale at which an outline drawn about the origin, star-shaped about
// it, just covers a centred stage of w x h twips: the most the stage reaches
// beyond the outline along any ray from the centre, found over a fine fan of
// rays plus those through the outline's points and the stage's corners.
double CoverScale(const StagePolygon& outline, double w, double h) {
    double worst = 0;
    auto ray = [&](double dx, double dy) {
        const double stage =
            std::min(dx != 0 ? w / 2 / std::abs(dx) : HUGE_VAL, dy != 0 ? h / 2 / std::abs(dy) : HUGE_VAL);
        double reach = HUGE_VAL;
        for (size_t i = 0; i < outline.size(); ++i) {
            const StagePoint& next = outline[(i + 1) % outline.size()];
            const double ax = outline[i].first, ay = outline[i].second;
            const double ex = next.first - ax, ey = next.second - ay;
            const double den = dx * ey - dy * ex;
            if (den == 0) continue;
            const double t = (ax * ey - ay * ex) / den, u = (ax * dy - ay * dx) / den;
            if (t > 0 && u >= 0 && u <= 1) reach = std::min(reach, t);
        }
        worst = std::max(worst, stage / reach);
    };
    constexpr int kRays = 7200;
    for (int k = 0; k < kRays; ++k) {
        const double a = 2 * std::numbers::pi * k / kRays;
        ray(std::sin(a), -std::cos(a));
    }
    for (const StagePoint& q : outline) ray(q.first, q.second);
    for (double sx : {-1.0, 1.0})
        for (double sy : {-1.0, 1.0}) ray(sx * w, sy * h);
    return worst * 1.002;  // what the fan may miss between its rays
}

// Defines the window and returns its id and the scale at which it just
// covers a stage of w x h twips, upright and centred.
std::pair<uint16_t, double> DefineWindow(Shape shape, double w, double h, MovieContext& ctx) {
    const auto r = static_cast<int32_t>(kRadius);
    StagePolygon outline;
    switch (shape) {
    case Shape::Square: outline = RectanglePolygon(-r, -r, 2 * r, 2 * r); break;
    case Shape::Rectangle: {
        const auto rh = static_cast<int32_t>(std::lround(kRadius * h / w));
        outline = RectanglePolygon(-r, -rh, 2 * r, 2 * rh);
        break;
    }
    case Shape::Star: outline = Star(5, kStarInner); break;
    case Shape::Star12: outline = Star(12, kStar12Inner); break;
    case Shape::Diamond: outline = {{0, -r}, {r, 0}, {0, r}, {-r, 0}}; break;
    case Shape::Circle: {
        // Sixteen quadratic arcs with their control points on the tangents
        // stray outwards by 0.02 % of the radius at most: round at any size.
        SwfShapeBuilder b;
        b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(SwfColor(0, 0, 0))));
        constexpr int kArcs = 16;
        const double half = std::numbers::pi / kArcs, reach = kRadius / std::cos(half);
        b.MoveTo(r, 0);
        for (int k = 0; k < kArcs; ++k) {
            const double a = 2 * half * k;
            b.CurveTo(static_cast<int32_t>(std::lround(reach * std::cos(a + half))),
                      static_cast<int32_t>(std::lround(reach * std::sin(a + half))),
                      static_cast<int32_t>(std::lround(kRadius * std::cos(a + 2 * half))),
                      static_cast<int32_t>(std::lround(kRadius * std::sin(a + 2 * half))));
        }
        const uint16_t id = ctx.NewCharacterId();
        ctx.movie.AddTag(std::make_unique<DefineShapeTag>(id, b.Bounds(), b.Build()));
        return {id, std::hypot(w, h) / 2 / kRadius};
    }
    }
    return {DefinePolygons({outline}, ctx), CoverScale(outline, w, h)};
}

}  // namespace

WindowTransition::WindowTransition() : TransitionClass("Window", kOptions) {}

bool WindowTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // The types come in pairs: closing, then opening, for each shape.
    const int32_t index = std::clamp(type(), 0, 11);
    const auto shape = static_cast<Shape>(index / 2);
    const bool opens = index % 2 == 1;
    const double w = ctx.StageWidth(), h = ctx.StageHeight();
    double turn = spin() ? static_cast<double>(spinCount()) * 360.0 : 0.0;
    if (!spinClockwise()) turn = -turn;

    // The window at `p` of the way: an opening one grows from a point and
    // comes upright as it covers the stage; a closing one starts upright
    // covering the stage and turns as it shrinks. A positive angle turns
    // clockwise on the screen.
    double fullScale = 1;
    auto window = [&](double p) {
        const double size = (opens ? p : 1 - p) * fullScale;
        const double degrees = std::fmod(opens ? -turn * (1 - p) : turn * p, 360.0);
        return (StageTransform::Translate(w / 2, h / 2) * StageTransform::Rotate(degrees) *
                StageTransform::ScaleAbout(size, size, 0, 0))
            .ToSwf();
    };

    uint16_t maskDepth = 0, copyDepth = 0;
    SlideOnStage* framed = opens ? incoming : outgoing;
    if (n > 1 && framed && framed->characterId != 0) {
        const auto [shapeId, scale] = DefineWindow(shape, w, h, ctx);
        fullScale = scale;
        if (opens) {
            // The incoming slide shows through the window, above the outgoing one.
            maskDepth = PlaceMaskedSlide(incoming, shapeId, ctx, window(1.0 / n));
        } else {
            // A copy of the outgoing slide in the window above the incoming
            // one; the outgoing slide itself goes, so around the window only
            // the incoming slide shows.
            PlaceSlide(incoming, ctx);
            copyDepth = PlaceMaskedCopy(outgoing, shapeId, ctx, window(1.0 / n));
            maskDepth = copyDepth - 1;
            RemoveSlide(outgoing, ctx);
        }
    } else {
        PlaceSlide(incoming, ctx);
    }
    for (int i = 1; i <= n; ++i) {
        if (i == n) {
            // The window has covered the stage (or closed): it goes, and so
            // does the copy in it.
            RemoveDepth(maskDepth, ctx);
            RemoveDepth(copyDepth, ctx);
        } else if (i > 1 && maskDepth != 0) {
            ModifyMask(maskDepth, window(static_cast<double>(i) / n), std::nullopt, ctx);
        }
        EndFrame(ctx);
    }
    if (copyDepth == 0) RemoveSlide(outgoing, ctx);
    return true;
}

}  // namespace quillet
