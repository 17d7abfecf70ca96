#include "effects/transitions/SlideTriangleOpen.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "effects/SlideRender.h"
#include "effects/StageShapes.h"
#include "effects/transitions/PagePieces.h"

namespace quillet {

namespace {

const char* const kKeywords[] = {"horizontal_right_to_left", "horizontal_left_to_right", "vertical_bottom_to_top",
                                 "vertical_top_to_bottom", "top_left_bottom_right", "top_left_bottom_right_opposite",
                                 "top_right_bottom_left", "top_right_bottom_left_opposite", "corners"};
const char* const kItems[] = {"Horizontal Right to Left", "Horizontal Left to Right", "Vertical Bottom to Top",
                              "Vertical Top to Bottom", "Top Left - Bottom Right Out",
                              "Top Left - Bottom Right Opposite", "Top Right - Bottom Left Out",
                              "Top Right - Bottom Left Opposite", "Corners"};
constinit const OptionSpec kOptions[] = {ListOption(0, "direction", "Direction", kItems, kKeywords, 0)};

// The stage's corners and centre, as fractions of its width and height.
struct Corner {
    double x, y;
};
constexpr Corner kTL{0, 0}, kTR{1, 0}, kBR{1, 1}, kBL{0, 1}, kC{0.5, 0.5};

// How a piece keeps pace: all the way at a steady speed, or (two pieces
// leaving the same way) the leader quick off the mark and the follower slow
// to start, so that the cut between them opens up while both slide on.
enum class Pace { Steady, Leads, Follows };

struct Piece {
    Corner a, b, c;  // the triangle
    double dx, dy;   // where it ends, in stage widths and heights: off the stage
    Pace pace;
};

struct Split {
    int count;
    Piece pieces[4];
};

// Index by direction. "/" cuts from the top right corner to the bottom left,
// "\" from the top left to the bottom right.
const Split kSplits[] = {
    // right to left: "/", the upper left piece leads
    {2, {{kTL, kTR, kBL, -1, 0, Pace::Leads}, {kTR, kBR, kBL, -1, 0, Pace::Follows}}},
    // left to right: "\", the upper right piece leads
    {2, {{kTL, kTR, kBR, 1, 0, Pace::Leads}, {kTL, kBR, kBL, 1, 0, Pace::Follows}}},
    // bottom to top: "\", the upper right piece leads
    {2, {{kTL, kTR, kBR, 0, -1, Pace::Leads}, {kTL, kBR, kBL, 0, -1, Pace::Follows}}},
    // top to bottom: "/", the lower right piece leads
    {2, {{kTR, kBR, kBL, 0, 1, Pace::Leads}, {kTL, kTR, kBL, 0, 1, Pace::Follows}}},
    // top left - bottom right out: "/", each piece away from the cut to its
    // corner; half the stage's diagonal takes the cut past the corner
    {2, {{kTL, kTR, kBL, -0.5, -0.5, Pace::Steady}, {kTR, kBR, kBL, 0.5, 0.5, Pace::Steady}}},
    // top left - bottom right opposite: "\", the pieces slide past each other along the cut
    {2, {{kTL, kTR, kBR, -1, -1, Pace::Steady}, {kTL, kBR, kBL, 1, 1, Pace::Steady}}},
    // top right - bottom left out: "\", each piece away from the cut to its corner
    {2, {{kTL, kTR, kBR, 0.5, -0.5, Pace::Steady}, {kTL, kBR, kBL, -0.5, 0.5, Pace::Steady}}},
    // top right - bottom left opposite: "/", the pieces slide past each other along the cut
    {2, {{kTL, kTR, kBL, 1, -1, Pace::Steady}, {kTR, kBR, kBL, -1, 1, Pace::Steady}}},
    // corners: both diagonals, each quarter out over its own side
    {4,
     {{kTL, kTR, kC, 0, -0.5, Pace::Steady},
      {kTR, kBR, kC, 0.5, 0, Pace::Steady},
      {kBR, kBL, kC, 0, 0.5, Pace::Steady},
      {kBL, kTL, kC, -0.5, 0, Pace::Steady}}},
};

double Travelled(Pace pace, double p) {
    switch (pace) {
    case Pace::Leads: return 1 - (1 - p) * (1 - p);
    case Pace::Follows: return p * p;
    case Pace::Steady: break;
    }
    return p;
}

}  // namespace

SlideTriangleOpenTransition::SlideTriangleOpenTransition() : TransitionClass("Slide Triangle Open", kOptions) {}

bool SlideTriangleOpenTransition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides()) return true;
    const int n = FrameCount(ctx.fps);
    if (n <= 0) return Transition::Render(incoming, outgoing, ctx);

    // Each piece is a masked copy of the outgoing slide above the incoming
    // one; the outgoing slide itself goes at once, so the gaps show only the
    // incoming slide.
    const Split& split = kSplits[std::clamp(direction(), 0, int32_t(std::size(kSplits)) - 1)];
    const double w = ctx.StageWidth(), h = ctx.StageHeight();
    auto at = [&](const Piece& piece, double p) {
        const double t = Travelled(piece.pace, p);
        return StageTransform::Translate(piece.dx * w * t, piece.dy * h * t);
    };
    PlaceSlide(incoming, ctx);
    std::vector<SlidePiece> pieces;
    if (n > 1 && outgoing && outgoing->characterId != 0) {
        auto point = [&](Corner c) { return StagePoint(int32_t(std::lround(c.x * w)), int32_t(std::lround(c.y * h))); };
        for (int k = 0; k < split.count; ++k) {
            const Piece& piece = split.pieces[k];
            const uint16_t mask = DefinePolygons({{point(piece.a), point(piece.b), point(piece.c)}}, ctx);
            pieces.emplace_back(outgoing, mask, at(piece, 1.0 / n), ctx);
        }
    }
    RemoveSlide(outgoing, ctx);
    for (int i = 1; i <= n; ++i) {
        for (size_t k = 0; k < pieces.size(); ++k) {
            if (i == n) pieces[k].Remove(ctx);  // all gone: the incoming slide alone
            else if (i > 1) pieces[k].Move(at(split.pieces[k], static_cast<double>(i) / n), ctx);
        }
        EndFrame(ctx);
    }
    return true;
}

}  // namespace quillet
